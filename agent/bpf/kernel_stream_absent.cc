// Stands in for kernel_stream_bpf.cc where the programs could not be built.
#include "agent/sources/kernel_stream.h"

namespace zendrix::agent {

OpenedStream OpenKernelStream() {
  return {nullptr, "this Agent was built without its kernel programs"};
}

}  // namespace zendrix::agent
