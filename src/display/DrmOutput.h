// SPDX-License-Identifier: MIT
#ifndef VANTOR_DRMOUTPUT_H
#define VANTOR_DRMOUTPUT_H

#include <string>

#include "DrmCard.h"

namespace Vantor {

// Where the picture goes on a DRM card: a connected connector with modes (a built-in
// panel before an external screen), its preferred mode (else its first), and a CRTC
// that can drive it (the one its encoder drives now, else one the encoder allows).
class CDrmOutput {
  public:
    // False when the card has no connected connector with modes, or none with a CRTC;
    // problem then says what is missing and found lists the connectors seen.
    bool Choose(const CDrmCard& card, std::string& problem, std::string& found);

    uint32_t connector = 0;
    uint32_t crtc = 0;
    drm_mode_modeinfo mode{};
    uint32_t widthMm = 0;
    uint32_t heightMm = 0;
    std::string name;  // as the kernel names it, e.g. eDP-1

  private:
    bool TakeConnector(const CDrmCard& card, const SDrmResources& resources,
                       const SDrmConnector& candidate);
    uint32_t CrtcFor(const CDrmCard& card, const SDrmResources& resources,
                     const SDrmConnector& candidate) const;
};

}  // namespace Vantor

#endif
