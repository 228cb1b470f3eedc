// The instance lock as a listening socket in the kernel's abstract name space: the name is taken for all
// users of the machine, and it is free again the moment its process is gone, however that ended.
//
// The name is a hash of the lock's name. A connection is the whole request; nothing is read from it, so
// another process can cause nothing but the coming forward, and only a process of the same user or of the
// administrator can: one that shows a window on somebody else's screen has no use for this one's. However
// many requests wait, the handler is called once. Nothing here ever blocks.
#pragma once

#include "platform/instance_lock.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {

class LinuxInstanceLock : public InstanceLock {
 public:
  bool Acquire(const std::string& name) override;
  void Release() override { socket_.Close(); }
  void AskToComeForward(const std::string& name) override;
  void OnAskedToComeForward(std::function<void()> handler) override { handler_ = std::move(handler); }

  // For the message loop to watch: readable when a request waits. -1 while no lock is held.
  int Descriptor() const { return socket_.get(); }
  // To be called when the descriptor is readable.
  void HandleRequests();

 private:
  FileDescriptor socket_;
  std::string held_;
  std::function<void()> handler_;
};

}  // namespace zendrix::platform
