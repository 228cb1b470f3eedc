#include "store/line_fields.h"

#include <algorithm>
#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>

#include "core/text_rules.h"
#endif

namespace zendrix::store {
namespace {

constexpr unsigned char kBlank = 32;

}  // namespace

void LineFields::NoteBars(std::size_t at, std::uint64_t hits) {
  if (bars_.size() < bar_count_ + 64) bars_.resize(2 * bars_.size() + 64);
  std::uint32_t* out = bars_.data() + bar_count_;
  for (; hits != 0; hits &= hits - 1) {
    *out++ = static_cast<std::uint32_t>(at + static_cast<std::size_t>(std::countr_zero(hits)));
  }
  bar_count_ = static_cast<std::size_t>(out - bars_.data());
}

// Notes the places of bars in [from, size) and tells whether there is any control character.
bool LineFields::ScanBytes(const char* text, std::size_t from, std::size_t size) {
  bool control = false;
  for (std::size_t i = from; i < size; ++i) {
    if (text[i] == '|') NoteBars(i, 1);
    control |= static_cast<unsigned char>(text[i]) < kBlank;
  }
  return control;
}

#ifdef __SSE2__
// Sixteen bytes at a time. The last sixteen overlap those before them, whose hits are masked out.
bool LineFields::Scan(const char* text, std::size_t size) {
  if (size < 16) return ScanBytes(text, 0, size);
  const __m128i bar = _mm_set1_epi8('|');
  const __m128i last_control = _mm_set1_epi8(kBlank - 1);
  __m128i controls = _mm_setzero_si128();
  const auto bars_at = [&](std::size_t i) -> std::uint64_t {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    controls = _mm_or_si128(controls, _mm_cmpeq_epi8(_mm_min_epu8(bytes, last_control), bytes));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, bar)));
  };
  std::size_t i = 0;
  for (; i + 64 <= size; i += 64) {
    NoteBars(i, bars_at(i) | bars_at(i + 16) << 16 | bars_at(i + 32) << 32 | bars_at(i + 48) << 48);
  }
  std::uint64_t rest = 0;
  const std::size_t rest_at = i;
  for (; i + 16 <= size; i += 16) rest |= bars_at(i) << (i - rest_at);
  if (i < size) {
    const std::uint64_t last = bars_at(size - 16) >> (16 - (size - i));
    rest |= last << (i - rest_at);
  }
  NoteBars(rest_at, rest);
  return _mm_movemask_epi8(controls) != 0;
}
#else
bool LineFields::Scan(const char* text, std::size_t size) {
  return ScanBytes(text, 0, size);
}
#endif

void LineFields::Split(std::span<char> line) {
  bar_count_ = 0;
  if (Scan(line.data(), line.size())) {
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < kBlank; }, ' ');
  }
  base_ = line.data();
  line_ = core::Trim({line.data(), line.size()});
}

}  // namespace zendrix::store
