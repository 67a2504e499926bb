// SPDX-License-Identifier: MIT
#include "VirtualSystem.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "RealCalls.h"

namespace VantorPlatform {

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

// Set while this thread runs the wait hook, whose own selects are not waits for a key.
__thread bool inWaitHook = false;
// Set when a wait this thread is about to make includes a node with records queued.
__thread bool queuedElsewhere = false;

std::string NamePath(int index) {
    return "/sys/class/input/input" + std::to_string(index) + "/name";
}

std::string NodePath(int event) {
    return "/dev/input/event" + std::to_string(event);
}

// The kernel's entry for an input device's evdev node, which tells its number.
std::string EventEntryPath(int index, int event) {
    return "/sys/class/input/input" + std::to_string(index) + "/event" + std::to_string(event);
}

// The event number of an event node path, or -1.
int NodeNumber(const char* path) {
    int event = -1, end = 0;
    if (std::sscanf(path, "/dev/input/event%d%n", &event, &end) != 1 || path[end] != '\0')
        return -1;
    return event;
}

// A select that may wait: no time-out, or a valid one above zero. A negative one fails
// at once and a zero one only polls.
bool CouldWait(const struct timeval* timeout) {
    return timeout == nullptr || (timeout->tv_sec >= 0 && timeout->tv_usec >= 0 &&
                                  (timeout->tv_sec > 0 || timeout->tv_usec > 0));
}

bool IsInvalid(const struct timeval* timeout) {
    return timeout != nullptr && (timeout->tv_sec < 0 || timeout->tv_usec < 0);
}

}  // namespace

VirtualSystem& VirtualSystem::Get() {
    // Never destroyed: the library under test closes and unmaps its devices in its own
    // unload hook, which runs after static objects of ours would be gone.
    static VirtualSystem* system = new VirtualSystem();
    return *system;
}

void VirtualSystem::Reset() {
    Lock lock(mutex);
    inputs.clear();
    framebuffers.clear();
    cards.clear();
    table.Clear();
    paths.Clear();
    root.Clear();
    waitHook = nullptr;
    waitUser = nullptr;
    exitWhenExhausted = false;
}

int VirtualSystem::Attach(const char* dir) {
    Lock lock(mutex);
    return root.Attach(dir) ? 0 : -1;
}

int VirtualSystem::AddFramebuffer(const char* path, const vp_screen& screen) {
    Lock lock(mutex);
    std::string real;
    if (!FramebufferDevice::IsValid(screen) || !Redirect(path, real)) return -1;
    framebuffers.erase(path);
    table.ForgetFramebuffer(path);
    root.MakeParents(real);
    auto device = std::make_unique<FramebufferDevice>();
    if (!device->Create(real, screen, root.IsShared())) return -1;
    framebuffers[path] = std::move(device);
    return 0;
}

int VirtualSystem::SetFailures(const char* path, int failures) {
    Lock lock(mutex);
    FramebufferDevice* device = Framebuffer(path);
    if (device == nullptr) return -1;
    device->failures = failures;
    return 0;
}

uint32_t* VirtualSystem::Pixels(const char* path) {
    Lock lock(mutex);
    FramebufferDevice* device = Framebuffer(path);
    return device ? device->Pixels() : nullptr;
}

int VirtualSystem::Count(const char* path, int FramebufferDevice::*counter) {
    Lock lock(mutex);
    FramebufferDevice* device = Framebuffer(path);
    return device ? device->*counter : -1;
}

int VirtualSystem::AddCard(const char* path, const vp_drm_card& card) {
    Lock lock(mutex);
    std::string real;
    if (!DrmCardDevice::IsValid(card) || !Redirect(path, real)) return -1;
    cards.erase(path);
    table.ForgetFramebuffer(path);
    root.MakeParents(real);
    auto device = std::make_unique<DrmCardDevice>();
    if (!device->Create(real, card, root.IsShared())) return -1;
    cards[path] = std::move(device);
    return 0;
}

int VirtualSystem::ConnectCard(const char* path, bool connected) {
    Lock lock(mutex);
    DrmCardDevice* device = Card(path);
    if (device == nullptr) return -1;
    device->SetConnected(connected);
    return 0;
}

int VirtualSystem::SetMasterElsewhere(const char* path, bool held) {
    Lock lock(mutex);
    DrmCardDevice* device = Card(path);
    if (device == nullptr) return -1;
    device->SetMasterElsewhere(held);
    return 0;
}

uint32_t* VirtualSystem::CardPixels(const char* path) {
    Lock lock(mutex);
    DrmCardDevice* device = Card(path);
    return device ? device->Pixels() : nullptr;
}

int VirtualSystem::CardState(const char* path, vp_drm_state& state) {
    Lock lock(mutex);
    DrmCardDevice* device = Card(path);
    if (device == nullptr) return -1;
    device->State(state);
    return 0;
}

int VirtualSystem::AddFile(const char* path, const void* data, size_t size) {
    Lock lock(mutex);
    std::string real;
    if (!Redirect(path, real)) return -1;
    root.MakeParents(real);
    return WriteFile(real, data, size);
}

int VirtualSystem::ConsoleMode() {
    Lock lock(mutex);
    std::string real;
    if (!Redirect(VirtualConsole::kPath, real)) return -1;
    const int fd = RealCalls::Open(real.c_str(), O_RDONLY | O_CLOEXEC, 0);
    if (fd < 0) return -1;
    char digit = 0;
    const bool read = pread(fd, &digit, 1, 0) == 1;
    RealCalls::Close(fd);
    return read ? digit - '0' : -1;
}

// A new file rather than the old one rewritten: a program that has the old one open
// keeps reading what it opened.
int VirtualSystem::WriteFile(const std::string& real, const void* data, size_t size) {
    unlink(real.c_str());
    const int fd = RealCalls::Open(real.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return -1;
    const char* bytes = static_cast<const char*>(data);
    size_t done = 0;
    for (ssize_t wrote = 0; done < size; done += size_t(wrote)) {
        wrote = write(fd, bytes + done, size - done);
        if (wrote <= 0) break;
    }
    RealCalls::Close(fd);
    return done == size ? 0 : -1;
}

int VirtualSystem::RemoveFile(const char* path) {
    Lock lock(mutex);
    std::string real;
    if (!Redirect(path, real)) return -1;
    return unlink(real.c_str());
}

int VirtualSystem::MapDirectory(const char* virtualDir, const char* hostDir) {
    Lock lock(mutex);
    paths.Map(virtualDir, hostDir);
    return 0;
}

int VirtualSystem::AddInput(int index, int event, const char* name) {
    Lock lock(mutex);
    if (index < 0) return -1;
    const bool withNode = event >= 0;
    if (withNode) {
        // A session's name file belongs to the session: only a new name replaces it.
        if (root.IsShared()) {
            ForgetInput(index);
        } else {
            RemoveInput(index);
        }
        const int holder = InputOfNode(NodePath(event).c_str());
        if (holder >= 0 && holder != index) return -1;  // another device's node
    }
    if (name != nullptr) {
        const std::string text = std::string(name) + "\n";
        if (AddFile(NamePath(index).c_str(), text.data(), text.size()) != 0) return -1;
    }
    if (!withNode) return 0;
    std::string real;
    Redirect(NodePath(event).c_str(), real);
    root.MakeParents(real);
    auto device = std::make_unique<InputDevice>();
    if (!device->MakeNode(real, root.IsShared()) || AddEventEntry(index, event) != 0) return -1;
    device->eventNumber = event;
    inputs[index] = std::move(device);
    return 0;
}

// A directory like the kernel's, with the uevent file that names the node.
int VirtualSystem::AddEventEntry(int index, int event) {
    const std::string uevent = "MAJOR=13\nMINOR=" + std::to_string(64 + event) +
                               "\nDEVNAME=input/event" + std::to_string(event) + "\n";
    return AddFile((EventEntryPath(index, event) + "/uevent").c_str(), uevent.data(),
                   uevent.size());
}

void VirtualSystem::RemoveEventEntry(int index, int event) {
    const std::string entry = EventEntryPath(index, event);
    RemoveFile((entry + "/uevent").c_str());
    std::string real;
    if (Redirect(entry.c_str(), real)) rmdir(real.c_str());
}

// Readers of the node stay known as unplugged: they see what evdev shows them then.
int VirtualSystem::RemoveInput(int index) {
    Lock lock(mutex);
    const bool hadName = RemoveFile(NamePath(index).c_str()) == 0;
    InputDevice* device = Input(index);
    if (device != nullptr) RemoveEventEntry(index, device->eventNumber);
    const bool hadNode = inputs.erase(index) > 0;
    table.UnplugInput(index);
    return hadName || hadNode ? 0 : -1;
}

void VirtualSystem::ForgetInput(int index) {
    inputs.erase(index);
    table.UnplugInput(index);
}

int VirtualSystem::QueueEvent(int index, int type, int code, int value) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device ? device->Queue(type, code, value) : -1;
}

int VirtualSystem::QueueKey(int index, int code, int value) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device ? device->QueueKey(code, value) : -1;
}

int VirtualSystem::QueuePress(int index, int code) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device ? device->QueuePress(code) : -1;
}

int VirtualSystem::InputOpenCount(int index) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device ? device->openCount : -1;
}

int VirtualSystem::SetScript(int index, const char* codes) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device && device->SetScript(codes) ? 0 : -1;
}

int VirtualSystem::ScriptLeft(int index) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    return device ? device->ScriptLeft() : -1;
}

void VirtualSystem::SetWaitHook(vp_wait_hook hook, void* user) {
    Lock lock(mutex);
    waitHook = hook;
    waitUser = user;
}

void VirtualSystem::SetExitWhenExhausted(bool enabled) {
    Lock lock(mutex);
    exitWhenExhausted = enabled;
}

bool VirtualSystem::Redirect(const char* path, std::string& real) {
    if (!VirtualPaths::MayBeVirtual(path)) return false;
    Lock lock(mutex);
    return paths.Redirect(path, real);
}

int VirtualSystem::RefusedOpen(const char* path) {
    Lock lock(mutex);
    FramebufferDevice* device = Framebuffer(path);
    if (device == nullptr) return 0;
    if (device->failures & VP_FAIL_OPEN) return ENOENT;
    return device->failures & VP_FAIL_OPEN_ACCESS ? EACCES : 0;
}

void VirtualSystem::Opened(const char* path, int fd) {
    Lock lock(mutex);
    table.Remove(fd);  // whatever that number was before, it is this file now
    if (FramebufferDevice* device = Framebuffer(path)) {
        if (table.Add(fd, path, -1)) ++device->openCount;
    } else if (DrmCardDevice* card = Card(path)) {
        if (table.Add(fd, path, -1)) card->Opened(fd);
    } else if (InputDevice* device = Input(InputOfNode(path))) {
        if (table.Add(fd, "", InputOfNode(path))) ++device->openCount;
    } else if (std::strcmp(path, VirtualConsole::kPath) == 0) {
        table.Add(fd, VirtualConsole::kPath, -1);  // a device path that is no framebuffer
    }
}

void VirtualSystem::Closing(int fd) {
    Lock lock(mutex);
    const DescriptorTable::Entry* entry = table.Find(fd);
    if (entry == nullptr) return;
    if (FramebufferDevice* device = Framebuffer(entry->framebuffer)) {
        --device->openCount;
        ++device->closeCount;
    } else if (DrmCardDevice* card = Card(entry->framebuffer)) {
        card->Closing(fd);
    } else if (InputDevice* device = Input(entry->input)) {
        --device->openCount;
    }
    table.Remove(fd);
}

bool VirtualSystem::AnswerIoctl(int fd, unsigned long request, void* argument, int& error) {
    Lock lock(mutex);
    const DescriptorTable::Entry* entry = table.Find(fd);
    if (entry != nullptr && entry->framebuffer == VirtualConsole::kPath) {
        return VirtualConsole::Answer(fd, request, argument, error);
    }
    if (DrmCardDevice* card = CardOf(fd)) {
        error = card->AnswerIoctl(fd, request, argument);
        return true;
    }
    FramebufferDevice* device = FramebufferOf(fd);
    return device != nullptr && device->AnswerIoctl(request, argument, error);
}

int VirtualSystem::RefusedMap(int fd) {
    Lock lock(mutex);
    FramebufferDevice* device = FramebufferOf(fd);
    return device != nullptr && (device->failures & VP_FAIL_MMAP) ? ENOMEM : 0;
}

void VirtualSystem::Mapped(int fd, void* address) {
    Lock lock(mutex);
    std::string framebuffer;
    table.TakeMapping(address, framebuffer);  // an old mapping there is gone
    const DescriptorTable::Entry* entry = table.Find(fd);
    if (entry != nullptr && !entry->framebuffer.empty())
        table.AddMapping(address, entry->framebuffer);
}

void VirtualSystem::Unmapping(void* address) {
    Lock lock(mutex);
    std::string framebuffer;
    if (!table.TakeMapping(address, framebuffer)) return;
    if (FramebufferDevice* device = Framebuffer(framebuffer)) ++device->unmapCount;
}

// The program is about to wait on event nodes: each empty one is a wait for a key. The
// hook looks first, then the script hands over its next key; the hook runs without the
// lock, so it may use any of the vp_ interface or start threads that do.
void VirtualSystem::BeforeSelect(int nfds, fd_set* readSet, const struct timeval* timeout) {
    if (readSet == nullptr || inWaitHook || IsInvalid(timeout)) return;
    WaitForKeys(EmptyNodesIn(nfds, readSet), CouldWait(timeout));
}

// Kept per thread and reused, so that a program's key wait does not allocate here:
// tests count the library's allocations while a menu waits.
std::vector<int>& VirtualSystem::EmptyList() {
    thread_local std::vector<int> empty;
    empty.clear();
    queuedElsewhere = false;
    return empty;
}

// The same for poll and ppoll; the caller has left out a time-out the call refuses.
void VirtualSystem::BeforePoll(const struct pollfd* fds, nfds_t count, bool couldWait) {
    if (fds == nullptr || inWaitHook) return;
    WaitForKeys(EmptyNodesIn(fds, count), couldWait);
}

// A program waiting on several devices waits for a key only when none of them gets
// one: a script used up on one device is no reason to stop while another still
// answers, or has records queued already.
void VirtualSystem::WaitForKeys(const std::vector<int>& emptyNodes, bool couldWait) {
    bool exhausted = false;
    for (int index : emptyNodes) {
        CallWaitHook(index);
        exhausted = FeedScript(index) || exhausted;
    }
    if (!exhausted || !couldWait || !exitWhenExhausted || queuedElsewhere) return;
    Lock lock(mutex);
    for (int index : emptyNodes) {
        InputDevice* device = Input(index);
        if (device != nullptr && !device->IsEmpty()) return;
    }
    StopExhausted();
}

const std::vector<int>& VirtualSystem::EmptyNodesIn(int nfds, fd_set* readSet) {
    Lock lock(mutex);
    std::vector<int>& empty = EmptyList();
    for (const auto& [fd, index] : table.InputDescriptors()) {
        if (fd < nfds && fd < FD_SETSIZE && FD_ISSET(fd, readSet)) AddIfEmptyNode(fd, empty);
    }
    return empty;
}

const std::vector<int>& VirtualSystem::EmptyNodesIn(const struct pollfd* fds, nfds_t count) {
    Lock lock(mutex);
    std::vector<int>& empty = EmptyList();
    for (nfds_t i = 0; i < count; ++i) {
        if (fds[i].events & POLLIN) AddIfEmptyNode(fds[i].fd, empty);
    }
    return empty;
}

void VirtualSystem::AddIfEmptyNode(int fd, std::vector<int>& empty) {
    const DescriptorTable::Entry* entry = table.Find(fd);
    if (entry == nullptr || entry->input < 0) return;
    InputDevice* device = Input(entry->input);
    if (device == nullptr) return;
    if (!device->IsEmpty()) {
        queuedElsewhere = true;
        return;
    }
    if (std::find(empty.begin(), empty.end(), entry->input) == empty.end())
        empty.push_back(entry->input);
}

// An unplugged evdev node polls as hung up and in error, whatever the reader asked for.
int VirtualSystem::AfterPoll(struct pollfd* fds, nfds_t count, int ready) {
    if (ready < 0 || fds == nullptr) return ready;
    Lock lock(mutex);
    for (nfds_t i = 0; i < count; ++i) {
        const DescriptorTable::Entry* entry = table.Find(fds[i].fd);
        if (entry == nullptr || !entry->unplugged) continue;
        if (fds[i].revents == 0) ++ready;
        fds[i].revents |= POLLHUP | POLLERR;
    }
    return ready;
}

bool VirtualSystem::IsUnplugged(int fd) {
    Lock lock(mutex);
    const DescriptorTable::Entry* entry = table.Find(fd);
    return entry != nullptr && entry->unplugged;
}

void VirtualSystem::CallWaitHook(int index) {
    vp_wait_hook hook;
    void* user;
    {
        Lock lock(mutex);
        hook = waitHook;
        user = waitUser;
    }
    if (hook == nullptr) return;
    inWaitHook = true;
    hook(index, user);
    inWaitHook = false;
}

// Only into a node that is still empty: a key the hook queued comes first. True when
// the node stays empty because its script is used up.
bool VirtualSystem::FeedScript(int index) {
    Lock lock(mutex);
    InputDevice* device = Input(index);
    if (device == nullptr || !device->IsEmpty()) return false;
    int code = 0;
    if (!device->NextScripted(code)) return device->ScriptUsedUp();
    device->QueuePress(code);
    return false;
}

void VirtualSystem::StopExhausted() {
    std::fprintf(stderr,
                 "vantor-platform: key script exhausted while the program waits for a key\n");
    std::fflush(stderr);
    root.RemoveIfOurs();
    _exit(VP_EXIT_SCRIPT_EXHAUSTED);
}

FramebufferDevice* VirtualSystem::Framebuffer(const std::string& path) {
    auto found = framebuffers.find(path);
    return found == framebuffers.end() ? nullptr : found->second.get();
}

FramebufferDevice* VirtualSystem::FramebufferOf(int fd) {
    const DescriptorTable::Entry* entry = table.Find(fd);
    return entry ? Framebuffer(entry->framebuffer) : nullptr;
}

DrmCardDevice* VirtualSystem::Card(const std::string& path) {
    auto found = cards.find(path);
    return found == cards.end() ? nullptr : found->second.get();
}

DrmCardDevice* VirtualSystem::CardOf(int fd) {
    const DescriptorTable::Entry* entry = table.Find(fd);
    return entry ? Card(entry->framebuffer) : nullptr;
}

InputDevice* VirtualSystem::Input(int index) {
    auto found = inputs.find(index);
    return found == inputs.end() ? nullptr : found->second.get();
}

// The index of the device whose node this path is, or -1.
int VirtualSystem::InputOfNode(const char* path) {
    const int event = NodeNumber(path);
    if (event < 0) return -1;
    for (const auto& [index, device] : inputs) {
        if (device->eventNumber == event) return index;
    }
    return -1;
}

}  // namespace VantorPlatform
