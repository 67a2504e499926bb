// SPDX-License-Identifier: MIT
#include "DescriptorTable.h"

#include <sys/stat.h>

namespace VantorPlatform {

std::atomic<int> DescriptorTable::descriptorCount{0};
std::atomic<int> DescriptorTable::mappingCount{0};

bool DescriptorTable::Add(int fd, const std::string& framebuffer, int input) {
    struct stat status;
    if (fstat(fd, &status) != 0) return false;
    descriptors[fd] = Entry{framebuffer, input, status.st_dev, status.st_ino};
    Counted();
    return true;
}

const DescriptorTable::Entry* DescriptorTable::Find(int fd) {
    auto found = descriptors.find(fd);
    if (found == descriptors.end()) return nullptr;
    struct stat status;
    if (fstat(fd, &status) == 0 && status.st_dev == found->second.device &&
        status.st_ino == found->second.inode) {
        return &found->second;
    }
    descriptors.erase(found);
    Counted();
    return nullptr;
}

void DescriptorTable::Remove(int fd) {
    descriptors.erase(fd);
    Counted();
}

std::vector<std::pair<int, int>> DescriptorTable::InputDescriptors() {
    std::vector<std::pair<int, int>> inputs;
    for (const auto& [fd, entry] : descriptors) {
        if (entry.input >= 0) inputs.emplace_back(fd, entry.input);
    }
    return inputs;
}

void DescriptorTable::AddMapping(void* address, const std::string& framebuffer) {
    mappings[address] = framebuffer;
    Counted();
}

bool DescriptorTable::TakeMapping(void* address, std::string& framebuffer) {
    auto found = mappings.find(address);
    if (found == mappings.end()) return false;
    framebuffer = found->second;
    mappings.erase(found);
    Counted();
    return true;
}

void DescriptorTable::ForgetFramebuffer(const std::string& framebuffer) {
    for (auto it = descriptors.begin(); it != descriptors.end();) {
        it = it->second.framebuffer == framebuffer ? descriptors.erase(it) : std::next(it);
    }
    for (auto it = mappings.begin(); it != mappings.end();) {
        it = it->second == framebuffer ? mappings.erase(it) : std::next(it);
    }
    Counted();
}

void DescriptorTable::UnplugInput(int index) {
    for (auto& [fd, entry] : descriptors) {
        if (entry.input != index) continue;
        entry.input = -1;
        entry.unplugged = true;
    }
}

void DescriptorTable::Clear() {
    descriptors.clear();
    mappings.clear();
    Counted();
}

void DescriptorTable::Counted() {
    descriptorCount.store(int(descriptors.size()), std::memory_order_relaxed);
    mappingCount.store(int(mappings.size()), std::memory_order_relaxed);
}

}  // namespace VantorPlatform
