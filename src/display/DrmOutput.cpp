// SPDX-License-Identifier: MIT
#include "DrmOutput.h"

#include <algorithm>

namespace Vantor {

namespace {

const char* TypeName(uint32_t type) {
    static const char* const kNames[] = {
        "Unknown", "VGA",       "DVI-I", "DVI-D", "DVI-A",     "Composite", "SVIDEO",
        "LVDS",    "Component", "DIN",   "DP",    "HDMI-A",    "HDMI-B",    "TV",
        "eDP",     "Virtual",   "DSI",   "DPI",   "Writeback", "SPI",       "USB"};
    return type < sizeof(kNames) / sizeof(kNames[0]) ? kNames[type] : "Unknown";
}

std::string NameOf(const drm_mode_get_connector& info) {
    return std::string(TypeName(info.connector_type)) + "-" +
           std::to_string(info.connector_type_id);
}

// A panel wired to the board is the device's own screen; anything else is plugged in.
bool IsBuiltIn(uint32_t type) {
    return type == DRM_MODE_CONNECTOR_eDP || type == DRM_MODE_CONNECTOR_LVDS ||
           type == DRM_MODE_CONNECTOR_DSI || type == DRM_MODE_CONNECTOR_DPI;
}

const char* StateName(const SDrmConnector& connector) {
    if (connector.info.connection == 1)
        return connector.modes.empty() ? "connected without modes" : "connected";
    return connector.info.connection == 2 ? "disconnected" : "unknown";
}

const drm_mode_modeinfo& ChosenMode(const std::vector<drm_mode_modeinfo>& modes) {
    for (const drm_mode_modeinfo& mode : modes)
        if ((mode.type & DRM_MODE_TYPE_PREFERRED) != 0) return mode;
    return modes.front();
}

}  // namespace

bool CDrmOutput::Choose(const CDrmCard& card, std::string& problem, std::string& found) {
    SDrmResources resources;
    if (!card.Resources(resources)) {
        problem = "no display resources";
        return false;
    }
    std::vector<SDrmConnector> usable;
    found.clear();
    for (uint32_t id : resources.connectors) {
        SDrmConnector candidate;
        if (!card.Connector(id, candidate)) continue;
        found += (found.empty() ? "" : ", ") + NameOf(candidate.info) + " " + StateName(candidate);
        if (candidate.info.connection == 1 && !candidate.modes.empty())
            usable.push_back(std::move(candidate));
    }
    std::stable_partition(usable.begin(), usable.end(),
                          [](const SDrmConnector& c) { return IsBuiltIn(c.info.connector_type); });
    for (const SDrmConnector& candidate : usable)
        if (TakeConnector(card, resources, candidate)) return true;
    if (found.empty()) found = "no connectors";
    problem = usable.empty() ? "no connected display" : "no CRTC can drive the display";
    return false;
}

bool CDrmOutput::TakeConnector(const CDrmCard& card, const SDrmResources& resources,
                               const SDrmConnector& candidate) {
    const uint32_t chosenCrtc = CrtcFor(card, resources, candidate);
    if (chosenCrtc == 0) return false;
    connector = candidate.info.connector_id;
    crtc = chosenCrtc;
    mode = ChosenMode(candidate.modes);
    widthMm = candidate.info.mm_width;
    heightMm = candidate.info.mm_height;
    name = NameOf(candidate.info);
    return true;
}

// The encoder in use keeps its CRTC, so the console's own output is the one taken over
// (and given back); otherwise the first CRTC any of the connector's encoders allows.
uint32_t CDrmOutput::CrtcFor(const CDrmCard& card, const SDrmResources& resources,
                             const SDrmConnector& candidate) const {
    drm_mode_get_encoder encoder;
    if (candidate.info.encoder_id != 0 && card.Encoder(candidate.info.encoder_id, encoder) &&
        encoder.crtc_id != 0)
        return encoder.crtc_id;
    for (uint32_t id : candidate.encoders) {
        if (!card.Encoder(id, encoder)) continue;
        for (size_t i = 0; i < resources.crtcs.size() && i < 32; ++i)
            if ((encoder.possible_crtcs & (1u << i)) != 0) return resources.crtcs[i];
    }
    return 0;
}

}  // namespace Vantor
