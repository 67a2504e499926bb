#ifndef VANTOR_PLATFORM_VIRTUALSYSTEM_H
#define VANTOR_PLATFORM_VIRTUALSYSTEM_H

#include <sys/types.h>

#include <deque>
#include <map>
#include <mutex>
#include <string>

#include "vantor_platform.h"

namespace VantorPlatform {

struct FramebufferDevice {
    vp_screen screen{};
    int failures = 0;
    std::string file;  // the real file behind the device
    uint32_t* view = nullptr;
    size_t size = 0;
    int openCount = 0;
    int unmapCount = 0;
};

struct InputDevice {
    int writer = -1;  // our own end of the event node, which keeps opens from blocking
    std::deque<int> script;
    bool scripted = false;
    int openCount = 0;
};

// Everything the layer pretends exists: virtual paths live as real files in a private
// directory; descriptors and mappings of virtual devices are tracked so the ioctls,
// failures and counters can answer for them.
class VirtualSystem {
  public:
    static VirtualSystem& Get();

    // The real path for a virtual one; false for paths that are not ours.
    bool Redirect(const char* path, std::string& real);

    int AddFramebuffer(const std::string& path, const vp_screen& screen);
    FramebufferDevice* Framebuffer(const std::string& path);
    int AddFile(const std::string& path, const void* data, size_t size);
    int RemoveFile(const std::string& path);
    int MapDirectory(const std::string& virtualDir, const std::string& hostDir);
    int AddInput(int index, const char* name);
    int RemoveInput(int index);
    InputDevice* Input(int index);
    int QueueEvent(int index, int type, int code, int value);
    void Reset();

    // Called by the interposed system calls.
    bool RefuseOpen(const char* path);
    void Opened(const char* path, int fd);
    void Closing(int fd);
    FramebufferDevice* FramebufferOf(int fd);
    bool Mapped(int fd, void* address);
    void Unmapping(void* address);
    void BeforeWait(int nfds, fd_set* readSet);

    std::recursive_mutex mutex;
    void (*waitHook)(int, void*) = nullptr;
    void* waitUser = nullptr;
    bool exitWhenExhausted = false;

  private:
    VirtualSystem() = default;
    const std::string& Root();
    void MakeParents(const std::string& realPath);
    std::string RealPathOf(const std::string& virtualPath);
    bool QueueIsEmpty(InputDevice& device);

    std::string root;
    std::map<std::string, FramebufferDevice> framebuffers;
    std::map<int, InputDevice> inputs;
    std::map<std::string, std::string> directories;
    std::map<int, std::string> framebufferFds;
    std::map<int, int> inputFds;
    std::map<void*, std::string> mappings;
};

}  // namespace VantorPlatform

#endif
