// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_DRMCARDDEVICE_H
#define VANTOR_PLATFORM_DRMCARDDEVICE_H

#include <stddef.h>
#include <stdint.h>

#include <map>
#include <string>
#include <vector>

#include "vantor_platform.h"

namespace VantorPlatform {

// One virtual DRM card: its display (a connector with two modes, the second preferred,
// and optionally an external screen listed before it), two CRTCs (the first showing the
// console's framebuffer), dumb buffers in slots of a real file, framebuffers, the DRM
// master and the counts tests read. It answers the requests a KMS client makes the way
// the kernel does, errors included.
class DrmCardDevice {
  public:
    DrmCardDevice() = default;
    DrmCardDevice(const DrmCardDevice&) = delete;
    DrmCardDevice& operator=(const DrmCardDevice&) = delete;
    ~DrmCardDevice();

    static bool IsValid(const vp_drm_card& card);
    bool Create(const std::string& realPath, const vp_drm_card& card, bool shared);
    // Every request on a card's descriptor is answered: unknown ones with ENOTTY.
    int AnswerIoctl(int fd, unsigned long request, void* argument);
    void Opened(int fd);
    void Closing(int fd);
    void SetConnected(bool connected);
    void SetMasterElsewhere(bool held) { masterElsewhere = held; }
    uint32_t* Pixels();
    void State(vp_drm_state& state) const;

  private:
    struct Mode {
        uint32_t width, height;
        bool preferred;
    };
    struct Connector {
        uint32_t id, type, encoder;
        bool connected;
        std::vector<uint32_t> modes;  // indices into the mode table
    };
    struct Buffer {
        size_t slot;
        uint32_t width, height, bpp, pitch;
        uint64_t size;
    };
    struct Framebuffer {
        uint32_t handle, width, height, bpp;
    };
    struct Crtc {
        uint32_t id, fb;
        bool modeValid;
        uint32_t mode;  // index into the mode table
    };

    int Version(void* argument) const;
    int Capability(void* argument) const;
    int Resources(void* argument) const;
    int GetConnector(void* argument) const;
    int GetEncoder(void* argument) const;
    int GetCrtc(void* argument) const;
    int SetCrtc(int fd, void* argument);
    int CreateDumb(void* argument);
    int MapDumb(void* argument) const;
    int DestroyDumb(void* argument);
    int AddFramebuffer(void* argument);
    int RemoveFramebuffer(void* argument);
    int Dirty(void* argument);
    const Connector* FindConnector(uint32_t id) const;
    Crtc* FindCrtc(uint32_t id);
    const Buffer* Shown() const;  // the dumb buffer the first CRTC scans out, if any

    vp_drm_card config{};
    std::vector<Mode> modes;
    std::vector<Connector> connectors;
    std::vector<Crtc> crtcs;
    std::map<uint32_t, Buffer> buffers;  // by handle
    std::map<uint32_t, Framebuffer> framebuffers;
    uint32_t nextHandle = 1;
    uint32_t nextFramebuffer = 100;
    int master = -1;
    bool masterElsewhere = false;
    int dirtyCount = 0;
    int lastDirty[4] = {0, 0, 0, 0};
    std::string file;
    uint8_t* view = nullptr;
    size_t slotBytes = 0;
    bool shared = false;
};

}  // namespace VantorPlatform

#endif
