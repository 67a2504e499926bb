// SPDX-License-Identifier: MIT
#include "DisplayChoice.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace VantorTool {

namespace {

const char kFramebuffer[] = "/dev/fb0";

// card0, card1, ... card10 in the kernel's numbering; renderD nodes cannot show anything.
std::vector<std::string> Cards() {
    std::vector<std::pair<int, std::string>> found;
    if (DIR* dir = opendir("/dev/dri")) {
        while (const dirent* entry = readdir(dir)) {
            int number = -1, end = 0;
            if (std::sscanf(entry->d_name, "card%d%n", &number, &end) == 1 &&
                entry->d_name[end] == '\0')
                found.emplace_back(number, std::string("/dev/dri/") + entry->d_name);
        }
        closedir(dir);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> cards;
    for (const auto& card : found) cards.push_back(card.second);
    return cards;
}

}  // namespace

std::vector<std::string> DisplayCandidates(const std::string& given) {
    if (!given.empty()) return {given};
    const char* environment = std::getenv("VANTOR_DEVICE");
    if (environment != nullptr && *environment != '\0') return {environment};
    if (access(kFramebuffer, F_OK) == 0) return {kFramebuffer};
    std::vector<std::string> cards = Cards();
    if (cards.empty()) cards.push_back(kFramebuffer);
    return cards;
}

}  // namespace VantorTool
