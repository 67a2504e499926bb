#include "VirtualSystem.h"

#include <fcntl.h>
#include <ftw.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "RealCalls.h"

namespace VantorPlatform {

namespace {

const char* const kVirtualPrefixes[] = {"/dev/fb", "/dev/input/", "/sys/class/input/",
                                        "/usr/share/fonts/vantor/"};

bool StartsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

int RemoveEntry(const char* path, const struct stat*, int, struct FTW*) {
    return remove(path);
}

std::string NamePath(int index) {
    return "/sys/class/input/input" + std::to_string(index) + "/name";
}
std::string NodePath(int index) {
    return "/dev/input/event" + std::to_string(index);
}

}  // namespace

VirtualSystem& VirtualSystem::Get() {
    // Never destroyed: the library under test closes and unmaps its devices in its own
    // unload hook, after static objects of ours would be gone.
    static VirtualSystem* system = new VirtualSystem();
    return *system;
}

const std::string& VirtualSystem::Root() {
    if (root.empty()) {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vantor-platform-XXXXXX";
        if (mkdtemp(&pattern[0]) == nullptr) {
            std::perror("vantor-platform: cannot make its directory");
            std::abort();
        }
        root = pattern;
        static std::string* removeAtExit = &root;
        std::atexit([] { nftw(removeAtExit->c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS); });
    }
    return root;
}

bool VirtualSystem::Redirect(const char* path, std::string& real) {
    if (path == nullptr || path[0] != '/') return false;
    const std::string wanted(path);
    std::lock_guard<std::recursive_mutex> lock(mutex);
    for (const auto& [virtualDir, hostDir] : directories) {
        if (StartsWith(wanted, virtualDir + "/")) {
            real = hostDir + wanted.substr(virtualDir.size());
            return true;
        }
    }
    for (const char* prefix : kVirtualPrefixes) {
        if (StartsWith(wanted, prefix)) {
            real = RealPathOf(wanted);
            return true;
        }
    }
    return false;
}

std::string VirtualSystem::RealPathOf(const std::string& virtualPath) {
    return Root() + virtualPath;
}

void VirtualSystem::MakeParents(const std::string& realPath) {
    for (size_t slash = Root().size() + 1; (slash = realPath.find('/', slash)) != std::string::npos;
         ++slash) {
        mkdir(realPath.substr(0, slash).c_str(), 0755);
    }
}

int VirtualSystem::AddFile(const std::string& path, const void* data, size_t size) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    std::string real;
    if (!Redirect(path.c_str(), real)) return -1;
    MakeParents(real);
    const int fd = RealCalls::Open(real.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) return -1;
    const bool written = size == 0 || write(fd, data, size) == static_cast<ssize_t>(size);
    RealCalls::Close(fd);
    return written ? 0 : -1;
}

int VirtualSystem::RemoveFile(const std::string& path) {
    std::string real;
    if (!Redirect(path.c_str(), real)) return -1;
    return unlink(real.c_str());
}

int VirtualSystem::MapDirectory(const std::string& virtualDir, const std::string& hostDir) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    std::string dir = virtualDir;
    while (dir.size() > 1 && dir.back() == '/') dir.pop_back();
    directories[dir] = hostDir;
    return 0;
}

int VirtualSystem::AddFramebuffer(const std::string& path, const vp_screen& screen) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    if (screen.xres_virtual <= 0 || screen.yres_virtual <= 0 || screen.bits_per_pixel <= 0) {
        return -1;
    }
    FramebufferDevice device;
    device.screen = screen;
    if (device.screen.line_length == 0) {
        device.screen.line_length = screen.xres_virtual * ((screen.bits_per_pixel + 7) / 8);
    }
    const size_t byLines = size_t(device.screen.line_length) * screen.yres_virtual;
    const size_t byPixels =
        size_t(screen.xres_virtual) * screen.yres_virtual * ((screen.bits_per_pixel + 7) / 8);
    device.size = byLines > byPixels ? byLines : byPixels;
    if (!Redirect(path.c_str(), device.file)) return -1;
    MakeParents(device.file);
    const int fd = RealCalls::Open(device.file.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
    if (fd < 0 || ftruncate(fd, off_t(device.size)) != 0) return -1;
    void* view = RealCalls::Mmap(nullptr, device.size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    RealCalls::Close(fd);
    if (view == MAP_FAILED) return -1;
    device.view = static_cast<uint32_t*>(view);
    auto old = framebuffers.find(path);
    if (old != framebuffers.end() && old->second.view)
        RealCalls::Munmap(old->second.view, old->second.size);
    framebuffers[path] = device;
    return 0;
}

FramebufferDevice* VirtualSystem::Framebuffer(const std::string& path) {
    auto found = framebuffers.find(path);
    return found == framebuffers.end() ? nullptr : &found->second;
}

int VirtualSystem::AddInput(int index, const char* name) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    if (index < 0) return -1;
    RemoveInput(index);
    if (name != nullptr) {
        const std::string text = std::string(name) + "\n";
        if (AddFile(NamePath(index), text.data(), text.size()) != 0) return -1;
    }
    std::string node;
    Redirect(NodePath(index).c_str(), node);
    MakeParents(node);
    if (mkfifo(node.c_str(), 0644) != 0) return -1;
    InputDevice device;
    device.writer = RealCalls::Open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC, 0);
    if (device.writer < 0) return -1;
    inputs[index] = device;
    return 0;
}

int VirtualSystem::RemoveInput(int index) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    auto found = inputs.find(index);
    RemoveFile(NamePath(index));
    RemoveFile(NodePath(index));
    if (found == inputs.end()) return -1;
    RealCalls::Close(found->second.writer);
    inputs.erase(found);
    return 0;
}

InputDevice* VirtualSystem::Input(int index) {
    auto found = inputs.find(index);
    return found == inputs.end() ? nullptr : &found->second;
}

int VirtualSystem::QueueEvent(int index, int type, int code, int value) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    InputDevice* device = Input(index);
    if (device == nullptr) return -1;
    input_event event;
    std::memset(&event, 0, sizeof(event));
    timeval now;
    gettimeofday(&now, nullptr);
    event.input_event_sec = now.tv_sec;
    event.input_event_usec = now.tv_usec;
    event.type = static_cast<__u16>(type);
    event.code = static_cast<__u16>(code);
    event.value = value;
    return write(device->writer, &event, sizeof(event)) == sizeof(event) ? 0 : -1;
}

void VirtualSystem::Reset() {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    while (!inputs.empty()) RemoveInput(inputs.begin()->first);
    for (auto& [path, device] : framebuffers) {
        RealCalls::Munmap(device.view, device.size);
        unlink(device.file.c_str());
    }
    framebuffers.clear();
    directories.clear();
    framebufferFds.clear();
    inputFds.clear();
    mappings.clear();
    waitHook = nullptr;
    waitUser = nullptr;
    exitWhenExhausted = false;
    if (!root.empty()) nftw((root + "/usr").c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
}

bool VirtualSystem::RefuseOpen(const char* path) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    FramebufferDevice* device = path ? Framebuffer(path) : nullptr;
    return device != nullptr && (device->failures & VP_FAIL_OPEN);
}

void VirtualSystem::Opened(const char* path, int fd) {
    if (fd < 0 || path == nullptr) return;
    std::lock_guard<std::recursive_mutex> lock(mutex);
    if (FramebufferDevice* device = Framebuffer(path)) {
        framebufferFds[fd] = path;
        ++device->openCount;
        return;
    }
    int index = -1;
    if (std::sscanf(path, "/dev/input/event%d", &index) == 1 && Input(index) != nullptr) {
        inputFds[fd] = index;
        ++Input(index)->openCount;
    }
}

void VirtualSystem::Closing(int fd) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    auto fb = framebufferFds.find(fd);
    if (fb != framebufferFds.end()) {
        if (FramebufferDevice* device = Framebuffer(fb->second)) --device->openCount;
        framebufferFds.erase(fb);
    }
    auto input = inputFds.find(fd);
    if (input != inputFds.end()) {
        if (InputDevice* device = Input(input->second)) --device->openCount;
        inputFds.erase(input);
    }
}

FramebufferDevice* VirtualSystem::FramebufferOf(int fd) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    auto found = framebufferFds.find(fd);
    return found == framebufferFds.end() ? nullptr : Framebuffer(found->second);
}

bool VirtualSystem::Mapped(int fd, void* address) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    auto found = framebufferFds.find(fd);
    if (found == framebufferFds.end()) return false;
    mappings[address] = found->second;
    return true;
}

void VirtualSystem::Unmapping(void* address) {
    std::lock_guard<std::recursive_mutex> lock(mutex);
    auto found = mappings.find(address);
    if (found == mappings.end()) return;
    if (FramebufferDevice* device = Framebuffer(found->second)) ++device->unmapCount;
    mappings.erase(found);
}

bool VirtualSystem::QueueIsEmpty(InputDevice& device) {
    int queued = 0;
    return RealCalls::Ioctl(device.writer, FIONREAD, &queued) == 0 && queued == 0;
}

// The program is about to wait on an event node with nothing in it: let the observer
// look at the screen, then hand over the next scripted key.
void VirtualSystem::BeforeWait(int nfds, fd_set* readSet) {
    if (readSet == nullptr) return;
    std::lock_guard<std::recursive_mutex> lock(mutex);
    const std::map<int, int> waiting = inputFds;  // the hook may open or close devices
    for (const auto& [fd, index] : waiting) {
        if (fd >= nfds || fd >= FD_SETSIZE || !FD_ISSET(fd, readSet)) continue;
        InputDevice* device = Input(index);
        if (device == nullptr || !QueueIsEmpty(*device)) continue;
        if (waitHook != nullptr) waitHook(index, waitUser);
        if (!device->script.empty()) {
            const int code = device->script.front();
            device->script.pop_front();
            // A press alone: a release left in the node would make the next wait look
            // busy, and the library reads releases as "no key" anyway.
            QueueEvent(index, EV_KEY, code, 1);
        } else if (device->scripted && exitWhenExhausted) {
            std::fprintf(
                stderr,
                "vantor-platform: key script exhausted while the program waits for a key\n");
            std::fflush(stderr);
            _exit(70);
        }
    }
}

}  // namespace VantorPlatform
