#include "store/line_fields.h"

#include <algorithm>
#include <bit>

#include "core/text_rules.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace zendrix::store {
namespace {

constexpr unsigned char kBlank = 32;

// Notes the places of bars in [from, size) and tells whether there is any control character.
bool ScanBytes(const char* text, std::size_t from, std::size_t size, std::vector<std::uint32_t>& bars) {
  bool control = false;
  for (std::size_t i = from; i < size; ++i) {
    if (text[i] == '|') bars.push_back(static_cast<std::uint32_t>(i));
    control |= static_cast<unsigned char>(text[i]) < kBlank;
  }
  return control;
}

#ifdef __SSE2__
bool Scan(const char* text, std::size_t size, std::vector<std::uint32_t>& bars) {
  const __m128i bar = _mm_set1_epi8('|');
  const __m128i last_control = _mm_set1_epi8(kBlank - 1);
  __m128i controls = _mm_setzero_si128();
  std::size_t i = 0;
  for (; i + 16 <= size; i += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    controls = _mm_or_si128(controls, _mm_cmpeq_epi8(_mm_min_epu8(bytes, last_control), bytes));
    auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, bar)));
    for (; hits != 0; hits &= hits - 1) {
      bars.push_back(static_cast<std::uint32_t>(i) + static_cast<std::uint32_t>(std::countr_zero(hits)));
    }
  }
  const bool tail = ScanBytes(text, i, size, bars);
  return tail || _mm_movemask_epi8(controls) != 0;
}
#else
bool Scan(const char* text, std::size_t size, std::vector<std::uint32_t>& bars) {
  return ScanBytes(text, 0, size, bars);
}
#endif

}  // namespace

void LineFields::Split(std::span<char> line) {
  bars_.clear();
  if (Scan(line.data(), line.size(), bars_)) {
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < kBlank; }, ' ');
  }
  base_ = line.data();
  line_ = core::Trim({line.data(), line.size()});
}

}  // namespace zendrix::store
