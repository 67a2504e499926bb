// SPDX-License-Identifier: MIT
#include "DrmCard.h"

#include <errno.h>
#include <sys/ioctl.h>

#include <cstring>

namespace Vantor {

namespace {

int Retried(int fd, unsigned long request, void* argument) {
    int result;
    do {
        result = ioctl(fd, request, argument);
    } while (result < 0 && (errno == EINTR || errno == EAGAIN));
    return result < 0 ? errno : 0;
}

// The kernel takes user pointers as 64-bit numbers.
template <typename T>
uint64_t Address(std::vector<T>& items) {
    return items.empty() ? 0 : uint64_t(reinterpret_cast<uintptr_t>(items.data()));
}

// Sizes a list to the count the kernel reported; true when it had to grow.
template <typename T>
bool Fit(std::vector<T>& items, uint32_t count) {
    const bool grew = count > items.size();
    items.resize(count);
    return grew;
}

}  // namespace

bool CDrmCard::Identify(int fd, std::string& name) {
    drm_version version;
    std::memset(&version, 0, sizeof(version));
    if (Retried(fd, DRM_IOCTL_VERSION, &version) != 0) return false;
    std::vector<char> text(version.name_len + 1, '\0');
    version.name = text.data();
    version.date_len = 0;
    version.desc_len = 0;
    version.name_len = text.size() - 1;
    if (Retried(fd, DRM_IOCTL_VERSION, &version) == 0) name.assign(text.data());
    return true;
}

int CDrmCard::Request(unsigned long request, void* argument) const {
    return Retried(fd, request, argument);
}

uint64_t CDrmCard::Capability(uint64_t capability) const {
    drm_get_cap cap;
    std::memset(&cap, 0, sizeof(cap));
    cap.capability = capability;
    return Request(DRM_IOCTL_GET_CAP, &cap) == 0 ? cap.value : 0;
}

bool CDrmCard::Resources(SDrmResources& resources) const {
    resources = SDrmResources();
    for (;;) {
        drm_mode_card_res card;
        std::memset(&card, 0, sizeof(card));
        card.crtc_id_ptr = Address(resources.crtcs);
        card.connector_id_ptr = Address(resources.connectors);
        card.encoder_id_ptr = Address(resources.encoders);
        card.count_crtcs = uint32_t(resources.crtcs.size());
        card.count_connectors = uint32_t(resources.connectors.size());
        card.count_encoders = uint32_t(resources.encoders.size());
        if (Request(DRM_IOCTL_MODE_GETRESOURCES, &card) != 0) return false;
        bool grew = Fit(resources.crtcs, card.count_crtcs);
        grew = Fit(resources.connectors, card.count_connectors) || grew;
        grew = Fit(resources.encoders, card.count_encoders) || grew;
        if (!grew) return true;
    }
}

// The first call, with no room for modes, also makes the driver probe the connector
// afresh, so a panel plugged in since boot is seen.
bool CDrmCard::Connector(uint32_t id, SDrmConnector& connector) const {
    connector.modes.clear();
    connector.encoders.clear();
    for (;;) {
        drm_mode_get_connector& info = connector.info;
        std::memset(&info, 0, sizeof(info));
        info.connector_id = id;
        info.modes_ptr = Address(connector.modes);
        info.encoders_ptr = Address(connector.encoders);
        info.count_modes = uint32_t(connector.modes.size());
        info.count_encoders = uint32_t(connector.encoders.size());
        if (Request(DRM_IOCTL_MODE_GETCONNECTOR, &info) != 0) return false;
        // Properties are not asked for; the kernel leaves the count for us to ignore.
        info.count_props = 0;
        bool grew = Fit(connector.modes, info.count_modes);
        grew = Fit(connector.encoders, info.count_encoders) || grew;
        if (!grew) return true;
    }
}

bool CDrmCard::Encoder(uint32_t id, drm_mode_get_encoder& encoder) const {
    std::memset(&encoder, 0, sizeof(encoder));
    encoder.encoder_id = id;
    return Request(DRM_IOCTL_MODE_GETENCODER, &encoder) == 0;
}

bool CDrmCard::Crtc(uint32_t id, drm_mode_crtc& crtc) const {
    std::memset(&crtc, 0, sizeof(crtc));
    crtc.crtc_id = id;
    return Request(DRM_IOCTL_MODE_GETCRTC, &crtc) == 0;
}

}  // namespace Vantor
