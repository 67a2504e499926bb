// SPDX-License-Identifier: MIT
#include "DrmCardDevice.h"

#include <drm.h>
#include <drm_mode.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "RealCalls.h"

namespace VantorPlatform {

namespace {

const char kDriverName[] = "vantor-drm";
const size_t kSlots = 4;         // dumb buffers alive at once
const uint32_t kConsoleFb = 60;  // the console's framebuffer, shown at start
const uint32_t kMainEncoder = 40, kExternalEncoder = 41;
const uint32_t kMainConnector = 30, kExternalConnector = 31;

uint32_t PitchOf(uint32_t width, uint32_t bpp) {
    return (width * ((bpp + 7) / 8) + 63) / 64 * 64;  // rows padded as many drivers do
}

template <typename T>
T& As(void* argument) {
    return *static_cast<T*>(argument);
}

void* Pointer(uint64_t address) {
    return reinterpret_cast<void*>(uintptr_t(address));
}

drm_mode_modeinfo ModeInfo(uint32_t width, uint32_t height, bool preferred) {
    drm_mode_modeinfo mode;
    std::memset(&mode, 0, sizeof(mode));
    mode.hdisplay = uint16_t(width);
    mode.hsync_start = uint16_t(width + 16);
    mode.hsync_end = uint16_t(width + 112);
    mode.htotal = uint16_t(width + 160);
    mode.vdisplay = uint16_t(height);
    mode.vsync_start = uint16_t(height + 3);
    mode.vsync_end = uint16_t(height + 9);
    mode.vtotal = uint16_t(height + 30);
    mode.vrefresh = 60;
    mode.clock = uint32_t(uint64_t(mode.htotal) * mode.vtotal * 60 / 1000);
    mode.type = DRM_MODE_TYPE_DRIVER | (preferred ? DRM_MODE_TYPE_PREFERRED : 0);
    std::snprintf(mode.name, sizeof(mode.name), "%ux%u", width, height);
    return mode;
}

// Copies a list where the caller left room for all of it, as the kernel does; the
// count always says how many there are.
template <typename T>
void Hand(const std::vector<T>& items, uint64_t destination, uint32_t& count) {
    if (destination != 0 && count >= items.size() && !items.empty())
        std::memcpy(Pointer(destination), items.data(), items.size() * sizeof(T));
    count = uint32_t(items.size());
}

}  // namespace

DrmCardDevice::~DrmCardDevice() {
    if (view != nullptr) RealCalls::Munmap(view, slotBytes * kSlots);
    if (!file.empty() && !shared) unlink(file.c_str());
}

bool DrmCardDevice::IsValid(const vp_drm_card& card) {
    return card.width > 0 && card.height > 0 && card.width <= 8192 && card.height <= 8192 &&
           card.connector_type >= 0 && card.connector_type <= DRM_MODE_CONNECTOR_USB;
}

// The connector lists a smaller mode first, so a client that takes the first mode
// instead of the preferred one shows the wrong size.
bool DrmCardDevice::Create(const std::string& realPath, const vp_drm_card& card, bool isShared) {
    config = card;
    shared = isShared;
    const uint32_t w = uint32_t(card.width), h = uint32_t(card.height);
    const bool small = w == 640 && h == 480;
    modes = {{small ? 800u : 640u, small ? 600u : 480u, false}, {w, h, true}, {1024, 768, true}};
    connectors.clear();
    if (card.flags & VP_DRM_EXTERNAL)
        connectors.push_back(
            {kExternalConnector, DRM_MODE_CONNECTOR_HDMIA, kExternalEncoder, true, {2}});
    connectors.push_back(
        {kMainConnector, uint32_t(card.connector_type), kMainEncoder, true, {0, 1}});
    crtcs = {{50, kConsoleFb, true, 1}, {51, 0, false, 0}};
    uint32_t maxWidth = 0, maxHeight = 0;
    for (const Mode& mode : modes) {
        maxWidth = std::max(maxWidth, mode.width);
        maxHeight = std::max(maxHeight, mode.height);
    }
    slotBytes = (size_t(PitchOf(maxWidth, 32)) * maxHeight + 4095) / 4096 * 4096;
    const int flags = O_RDWR | O_CREAT | O_CLOEXEC | (shared ? 0 : O_EXCL);
    if (!shared) unlink(realPath.c_str());
    const int fd = RealCalls::Open(realPath.c_str(), flags, 0644);
    if (fd < 0) return false;
    file = realPath;
    struct stat status;
    void* mapped = MAP_FAILED;
    if (fstat(fd, &status) == 0 && (size_t(status.st_size) >= slotBytes * kSlots ||
                                    ftruncate(fd, off_t(slotBytes * kSlots)) == 0))
        mapped =
            RealCalls::Mmap(nullptr, slotBytes * kSlots, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    RealCalls::Close(fd);
    if (mapped == MAP_FAILED) return false;
    view = static_cast<uint8_t*>(mapped);
    return true;
}

void DrmCardDevice::Opened(int fd) {
    if (master < 0 && !masterElsewhere) master = fd;
}

void DrmCardDevice::Closing(int fd) {
    if (fd == master) master = -1;
}

void DrmCardDevice::SetConnected(bool connected) {
    connectors.back().connected = connected;
}

int DrmCardDevice::AnswerIoctl(int fd, unsigned long request, void* argument) {
    if (argument == nullptr) return _IOC_TYPE(request) == DRM_IOCTL_BASE ? EFAULT : ENOTTY;
    switch (request) {
        case DRM_IOCTL_VERSION:
            return Version(argument);
        case DRM_IOCTL_GET_CAP:
            return Capability(argument);
        case DRM_IOCTL_MODE_GETRESOURCES:
            return Resources(argument);
        case DRM_IOCTL_MODE_GETCONNECTOR:
            return GetConnector(argument);
        case DRM_IOCTL_MODE_GETENCODER:
            return GetEncoder(argument);
        case DRM_IOCTL_MODE_GETCRTC:
            return GetCrtc(argument);
        case DRM_IOCTL_MODE_SETCRTC:
            return SetCrtc(fd, argument);
        case DRM_IOCTL_MODE_CREATE_DUMB:
            return CreateDumb(argument);
        case DRM_IOCTL_MODE_MAP_DUMB:
            return MapDumb(argument);
        case DRM_IOCTL_MODE_DESTROY_DUMB:
            return DestroyDumb(argument);
        case DRM_IOCTL_MODE_ADDFB:
            return AddFramebuffer(argument);
        case DRM_IOCTL_MODE_RMFB:
            return RemoveFramebuffer(argument);
        case DRM_IOCTL_MODE_DIRTYFB:
            return Dirty(argument);
        default:
            return _IOC_TYPE(request) == DRM_IOCTL_BASE ? EINVAL : ENOTTY;
    }
}

int DrmCardDevice::Version(void* argument) const {
    drm_version& version = As<drm_version>(argument);
    const size_t length = sizeof(kDriverName) - 1;
    if (version.name != nullptr && version.name_len > 0)
        std::memcpy(version.name, kDriverName, std::min(length, size_t(version.name_len)));
    version.version_major = 1;
    version.name_len = length;
    version.date_len = 0;
    version.desc_len = 0;
    return 0;
}

int DrmCardDevice::Capability(void* argument) const {
    drm_get_cap& cap = As<drm_get_cap>(argument);
    if (cap.capability == DRM_CAP_DUMB_BUFFER)
        cap.value = (config.flags & VP_DRM_NO_DUMB) ? 0 : 1;
    else if (cap.capability == DRM_CAP_DUMB_PREFERRED_DEPTH)
        cap.value = (config.flags & VP_DRM_ONLY_16) ? 16 : 24;
    else
        return EINVAL;
    return 0;
}

int DrmCardDevice::Resources(void* argument) const {
    drm_mode_card_res& card = As<drm_mode_card_res>(argument);
    std::vector<uint32_t> crtcIds, connectorIds, encoderIds;
    for (const Crtc& crtc : crtcs) crtcIds.push_back(crtc.id);
    for (const Connector& connector : connectors) {
        connectorIds.push_back(connector.id);
        encoderIds.push_back(connector.encoder);
    }
    Hand(crtcIds, card.crtc_id_ptr, card.count_crtcs);
    Hand(connectorIds, card.connector_id_ptr, card.count_connectors);
    Hand(encoderIds, card.encoder_id_ptr, card.count_encoders);
    card.count_fbs = 0;
    card.min_width = card.min_height = 1;
    card.max_width = card.max_height = 8192;
    return 0;
}

// A disconnected connector has no modes and drives no encoder, as after an unplug.
int DrmCardDevice::GetConnector(void* argument) const {
    drm_mode_get_connector& info = As<drm_mode_get_connector>(argument);
    const Connector* connector = FindConnector(info.connector_id);
    if (connector == nullptr) return ENOENT;
    std::vector<drm_mode_modeinfo> list;
    if (connector->connected)
        for (uint32_t index : connector->modes)
            list.push_back(
                ModeInfo(modes[index].width, modes[index].height, modes[index].preferred));
    Hand(list, info.modes_ptr, info.count_modes);
    Hand(std::vector<uint32_t>{connector->encoder}, info.encoders_ptr, info.count_encoders);
    info.count_props = 0;
    info.encoder_id = connector->connected && connector->id == kMainConnector ? kMainEncoder : 0;
    info.connector_type = connector->type;
    info.connector_type_id = 1;
    info.connection = connector->connected ? 1 : 2;
    info.mm_width = connector->connected ? 150 : 0;
    info.mm_height = connector->connected ? 90 : 0;
    return 0;
}

int DrmCardDevice::GetEncoder(void* argument) const {
    drm_mode_get_encoder& encoder = As<drm_mode_get_encoder>(argument);
    if (encoder.encoder_id != kMainEncoder && encoder.encoder_id != kExternalEncoder) return ENOENT;
    encoder.crtc_id = encoder.encoder_id == kMainEncoder ? crtcs[0].id : 0;
    encoder.possible_crtcs = 3;
    encoder.possible_clones = 0;
    return 0;
}

int DrmCardDevice::GetCrtc(void* argument) const {
    drm_mode_crtc& out = As<drm_mode_crtc>(argument);
    for (const Crtc& crtc : crtcs) {
        if (crtc.id != out.crtc_id) continue;
        out.fb_id = crtc.fb;
        out.x = out.y = 0;
        out.count_connectors = 0;
        out.mode_valid = crtc.modeValid;
        const Mode& mode = modes[crtc.mode];
        out.mode = crtc.modeValid ? ModeInfo(mode.width, mode.height, mode.preferred)
                                  : drm_mode_modeinfo{};
        return 0;
    }
    return ENOENT;
}

// Only the master may set a mode. The mode must be one of the connector's and fit the
// framebuffer; a framebuffer of 0 switches the CRTC off.
int DrmCardDevice::SetCrtc(int fd, void* argument) {
    drm_mode_crtc& in = As<drm_mode_crtc>(argument);
    if (fd != master || masterElsewhere) return EACCES;
    Crtc* crtc = FindCrtc(in.crtc_id);
    if (crtc == nullptr) return ENOENT;
    if (in.fb_id == 0) {
        *crtc = {crtc->id, 0, false, 0};
        return 0;
    }
    if (!in.mode_valid || in.count_connectors != 1 || in.set_connectors_ptr == 0) return EINVAL;
    const Connector* connector =
        FindConnector(*static_cast<const uint32_t*>(Pointer(in.set_connectors_ptr)));
    if (connector == nullptr) return ENOENT;
    const auto fb = framebuffers.find(in.fb_id);
    const bool console = in.fb_id == kConsoleFb;
    if (!console && fb == framebuffers.end()) return ENOENT;
    for (uint32_t index : connector->modes) {
        const Mode& mode = modes[index];
        if (mode.width != in.mode.hdisplay || mode.height != in.mode.vdisplay) continue;
        if (!console && (fb->second.width < mode.width || fb->second.height < mode.height))
            return ENOSPC;
        *crtc = {crtc->id, in.fb_id, true, index};
        return 0;
    }
    return EINVAL;
}

int DrmCardDevice::CreateDumb(void* argument) {
    drm_mode_create_dumb& create = As<drm_mode_create_dumb>(argument);
    if (config.flags & VP_DRM_NO_DUMB) return ENOSYS;
    if (create.width == 0 || create.height == 0 || (create.bpp != 16 && create.bpp != 32))
        return EINVAL;
    const uint32_t pitch = PitchOf(create.width, create.bpp);
    const uint64_t size = uint64_t(pitch) * create.height;
    if (size > slotBytes) return EINVAL;
    std::vector<bool> used(kSlots, false);
    for (const auto& entry : buffers) used[entry.second.slot] = true;
    const auto free = std::find(used.begin(), used.end(), false);
    if (free == used.end()) return ENOMEM;
    const size_t slot = size_t(free - used.begin());
    std::memset(view + slot * slotBytes, 0, slotBytes);  // a new buffer is black
    create.handle = nextHandle++;
    create.pitch = pitch;
    create.size = size;
    buffers[create.handle] = {slot, create.width, create.height, create.bpp, pitch, size};
    return 0;
}

int DrmCardDevice::MapDumb(void* argument) const {
    drm_mode_map_dumb& map = As<drm_mode_map_dumb>(argument);
    const auto buffer = buffers.find(map.handle);
    if (buffer == buffers.end()) return ENOENT;
    map.offset = uint64_t(buffer->second.slot * slotBytes);
    return 0;
}

int DrmCardDevice::DestroyDumb(void* argument) {
    return buffers.erase(As<drm_mode_destroy_dumb>(argument).handle) == 1 ? 0 : ENOENT;
}

// The legacy call names the layout by depth: 24 is XRGB8888, 16 RGB565. A card that
// scans out 16 bits only refuses 24.
int DrmCardDevice::AddFramebuffer(void* argument) {
    drm_mode_fb_cmd& add = As<drm_mode_fb_cmd>(argument);
    const auto buffer = buffers.find(add.handle);
    if (buffer == buffers.end()) return ENOENT;
    const bool xrgb = add.bpp == 32 && add.depth == 24 && !(config.flags & VP_DRM_ONLY_16);
    const bool rgb565 = add.bpp == 16 && add.depth == 16;
    const Buffer& memory = buffer->second;
    if ((!xrgb && !rgb565) || add.width == 0 || add.height == 0 ||
        add.pitch < add.width * (add.bpp / 8) || uint64_t(add.pitch) * add.height > memory.size)
        return EINVAL;
    add.fb_id = nextFramebuffer++;
    framebuffers[add.fb_id] = {add.handle, add.width, add.height, add.bpp};
    return 0;
}

// Removing the framebuffer a CRTC shows switches that CRTC off, as the kernel does.
int DrmCardDevice::RemoveFramebuffer(void* argument) {
    const uint32_t id = As<uint32_t>(argument);
    if (framebuffers.erase(id) != 1) return ENOENT;
    for (Crtc& crtc : crtcs)
        if (crtc.fb == id) crtc = {crtc.id, 0, false, 0};
    return 0;
}

int DrmCardDevice::Dirty(void* argument) {
    const drm_mode_fb_dirty_cmd& dirty = As<drm_mode_fb_dirty_cmd>(argument);
    if (framebuffers.count(dirty.fb_id) == 0) return ENOENT;
    ++dirtyCount;
    if (config.flags & VP_DRM_NO_DIRTY) return ENOSYS;
    if (dirty.num_clips > 0 && dirty.clips_ptr != 0) {
        const drm_clip_rect& clip = *static_cast<const drm_clip_rect*>(Pointer(dirty.clips_ptr));
        const int rect[4] = {clip.x1, clip.y1, clip.x2 - clip.x1, clip.y2 - clip.y1};
        std::memcpy(lastDirty, rect, sizeof(rect));
    }
    return 0;
}

const DrmCardDevice::Connector* DrmCardDevice::FindConnector(uint32_t id) const {
    for (const Connector& connector : connectors)
        if (connector.id == id) return &connector;
    return nullptr;
}

DrmCardDevice::Crtc* DrmCardDevice::FindCrtc(uint32_t id) {
    for (Crtc& crtc : crtcs)
        if (crtc.id == id) return &crtc;
    return nullptr;
}

const DrmCardDevice::Buffer* DrmCardDevice::Shown() const {
    const auto fb = framebuffers.find(crtcs[0].fb);
    if (fb == framebuffers.end()) return nullptr;
    const auto buffer = buffers.find(fb->second.handle);
    return buffer == buffers.end() ? nullptr : &buffer->second;
}

// The picture is what the first CRTC scans out: ours, or nothing while the console shows.
uint32_t* DrmCardDevice::Pixels() {
    const Buffer* buffer = Shown();
    return buffer ? reinterpret_cast<uint32_t*>(view + buffer->slot * slotBytes) : nullptr;
}

void DrmCardDevice::State(vp_drm_state& state) const {
    std::memset(&state, 0, sizeof(state));
    const Crtc& crtc = crtcs[0];
    state.console_shown = crtc.fb == kConsoleFb && crtc.modeValid && crtc.mode == 1;
    if (crtc.modeValid) {
        state.width = int(modes[crtc.mode].width);
        state.height = int(modes[crtc.mode].height);
    }
    if (const Buffer* buffer = Shown()) {
        state.pitch = int(buffer->pitch);
        state.bits_per_pixel = int(buffer->bpp);
    }
    state.dirty_count = dirtyCount;
    std::memcpy(state.last_dirty, lastDirty, sizeof(lastDirty));
    state.buffers = int(buffers.size());
    state.framebuffers = int(framebuffers.size());
    state.master_held = master >= 0 || masterElsewhere;
}

}  // namespace VantorPlatform
