// SPDX-License-Identifier: MIT
#ifndef VANTOR_DRMCARD_H
#define VANTOR_DRMCARD_H

#include <drm.h>
#include <drm_mode.h>
#include <stdint.h>

#include <string>
#include <vector>

namespace Vantor {

struct SDrmResources {
    std::vector<uint32_t> crtcs;
    std::vector<uint32_t> connectors;
    std::vector<uint32_t> encoders;
};

struct SDrmConnector {
    drm_mode_get_connector info;  // the counts are those of the vectors
    std::vector<drm_mode_modeinfo> modes;
    std::vector<uint32_t> encoders;
};

// The requests the library makes of a DRM card, in plain ioctls on its descriptor. A
// request interrupted by a signal (or told to try again) is simply made again; lists
// come in two calls, counts then arrays, again if the counts grew in between (a
// hot-plug).
class CDrmCard {
  public:
    explicit CDrmCard(int descriptor) : fd(descriptor) {}

    // True when the descriptor is a DRM node at all; name is the driver's.
    static bool Identify(int fd, std::string& name);

    // 0 or the errno of the failed request.
    int Request(unsigned long request, void* argument) const;
    uint64_t Capability(uint64_t capability) const;  // 0 when unknown
    bool Resources(SDrmResources& resources) const;
    bool Connector(uint32_t id, SDrmConnector& connector) const;
    bool Encoder(uint32_t id, drm_mode_get_encoder& encoder) const;
    bool Crtc(uint32_t id, drm_mode_crtc& crtc) const;

  private:
    int fd;
};

}  // namespace Vantor

#endif
