// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_VIRTUALSYSTEM_H
#define VANTOR_PLATFORM_VIRTUALSYSTEM_H

#include <poll.h>
#include <sys/select.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "DescriptorTable.h"
#include "DrmCardDevice.h"
#include "FramebufferDevice.h"
#include "InputDevice.h"
#include "PrivateRoot.h"
#include "VirtualConsole.h"
#include "VirtualPaths.h"
#include "vantor_platform.h"

namespace VantorPlatform {

// Everything this process pretends exists, behind one lock: the set-up the vp_
// interface asks for, and the answers the interposed calls need. A recursive lock,
// since serving one call can make others (opening a device's file, say).
class VirtualSystem {
  public:
    static VirtualSystem& Get();

    // Set-up, for the vp_ interface.
    void Reset();
    int Attach(const char* dir);
    int AddFramebuffer(const char* path, const vp_screen& screen);
    int SetFailures(const char* path, int failures);
    uint32_t* Pixels(const char* path);
    int Count(const char* path, int FramebufferDevice::*counter);
    int AddCard(const char* path, const vp_drm_card& card);
    int ConnectCard(const char* path, bool connected);
    int SetMasterElsewhere(const char* path, bool held);
    uint32_t* CardPixels(const char* path);
    int CardState(const char* path, vp_drm_state& state);
    int AddFile(const char* path, const void* data, size_t size);
    int RemoveFile(const char* path);
    int MapDirectory(const char* virtualDir, const char* hostDir);
    int ConsoleMode();
    // A negative event number makes the name file alone, without node or eventM entry.
    int AddInput(int index, int event, const char* name);
    int RemoveInput(int index);
    int QueueEvent(int index, int type, int code, int value);
    int QueueKey(int index, int code, int value);
    int QueuePress(int index, int code);
    int InputOpenCount(int index);
    int SetScript(int index, const char* codes);
    int ScriptLeft(int index);
    void SetWaitHook(vp_wait_hook hook, void* user);
    void SetExitWhenExhausted(bool enabled);

    // For the interposed calls.
    bool Redirect(const char* path, std::string& real);
    int RefusedOpen(const char* path);  // the errno of an injected failure, or 0
    void Opened(const char* path, int fd);
    void Closing(int fd);
    bool AnswerIoctl(int fd, unsigned long request, void* argument, int& error);
    int RefusedMap(int fd);
    void Mapped(int fd, void* address);
    void Unmapping(void* address);
    void BeforeSelect(int nfds, fd_set* readSet, const struct timeval* timeout);
    void BeforePoll(const struct pollfd* fds, nfds_t count, bool couldWait);
    int AfterPoll(struct pollfd* fds, nfds_t count, int ready);  // the adjusted count
    bool IsUnplugged(int fd);

  private:
    VirtualSystem() : paths(root) {}
    void ForgetInput(int index);
    FramebufferDevice* Framebuffer(const std::string& path);
    FramebufferDevice* FramebufferOf(int fd);
    DrmCardDevice* Card(const std::string& path);
    DrmCardDevice* CardOf(int fd);
    InputDevice* Input(int index);
    int InputOfNode(const char* path);
    int AddEventEntry(int index, int event);
    void RemoveEventEntry(int index, int event);
    int WriteFile(const std::string& real, const void* data, size_t size);
    static std::vector<int>& EmptyList();
    const std::vector<int>& EmptyNodesIn(int nfds, fd_set* readSet);
    const std::vector<int>& EmptyNodesIn(const struct pollfd* fds, nfds_t count);
    void AddIfEmptyNode(int fd, std::vector<int>& empty);
    void WaitForKeys(const std::vector<int>& emptyNodes, bool couldWait);
    void CallWaitHook(int index);
    bool FeedScript(int index);
    [[noreturn]] void StopExhausted();

    std::recursive_mutex mutex;
    PrivateRoot root;
    VirtualPaths paths;
    DescriptorTable table;
    std::map<std::string, std::unique_ptr<FramebufferDevice>> framebuffers;
    std::map<std::string, std::unique_ptr<DrmCardDevice>> cards;
    std::map<int, std::unique_ptr<InputDevice>> inputs;
    vp_wait_hook waitHook = nullptr;
    void* waitUser = nullptr;
    bool exitWhenExhausted = false;
};

}  // namespace VantorPlatform

#endif
