// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_DESCRIPTORTABLE_H
#define VANTOR_PLATFORM_DESCRIPTORTABLE_H

#include <sys/types.h>

#include <atomic>
#include <map>
#include <string>
#include <vector>

namespace VantorPlatform {

// Which of the program's descriptors and mappings belong to virtual devices. A
// descriptor is remembered with the file it was opened on, so a number that was closed
// behind our back (close_range, exec) and reused for something else is not mistaken
// for the device.
class DescriptorTable {
  public:
    struct Entry {
        std::string framebuffer;  // the device path, or empty for an input node
        int input = -1;           // the input index, or -1 for a framebuffer
        dev_t device = 0;
        ino_t inode = 0;
        bool unplugged = false;  // an input node whose device has been removed
    };

    // Lock-free, for the interposed calls: false means none of ours exist.
    static bool HasDescriptors() { return descriptorCount.load(std::memory_order_relaxed) > 0; }
    static bool HasMappings() { return mappingCount.load(std::memory_order_relaxed) > 0; }

    bool Add(int fd, const std::string& framebuffer, int input);
    // The entry for a descriptor that still refers to the file it was opened on.
    const Entry* Find(int fd);
    void Remove(int fd);
    std::vector<std::pair<int, int>> InputDescriptors();  // (descriptor, index) pairs

    void AddMapping(void* address, const std::string& framebuffer);
    // The device of a mapping that starts at address, forgetting the mapping.
    bool TakeMapping(void* address, std::string& framebuffer);

    // Stops tracking everything of one device, as when it is replaced or removed.
    void ForgetFramebuffer(const std::string& framebuffer);
    // The node's descriptors stay known, as unplugged and no longer of that index (a new
    // device may take it), so that they can answer like an unplugged evdev node.
    void UnplugInput(int index);
    void Clear();

  private:
    void Counted();

    std::map<int, Entry> descriptors;
    std::map<void*, std::string> mappings;
    static std::atomic<int> descriptorCount;
    static std::atomic<int> mappingCount;
};

}  // namespace VantorPlatform

#endif
