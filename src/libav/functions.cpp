// SPDX-License-Identifier: MIT
#include "libav/functions.h"

#include <dlfcn.h>

namespace halvane::libav {

using namespace Qt::StringLiterals;

namespace {

// The most that libav may ask of memory at once, as it believes the sizes that files claim. The
// index of an audiobook of 70 hours (24 bytes for each of 43 packets a second) still fits.
constexpr std::size_t largestBlock = 256 << 20;

// Fills the table of functions; they are written once, before anyone may call them.
Result<> loadOnce() {
    // The version whose headers were read. It brings libavcodec and libavutil along, in which
    // dlsym() looks too. Never unloaded.
    void* library =
        dlopen("libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR), RTLD_LAZY | RTLD_LOCAL);
    bool isComplete = library != nullptr;
#define HALVANE_LOOK_UP(name)                                                                      \
    if (isComplete) {                                                                              \
        libav::name = reinterpret_cast<decltype(&::name)>(dlsym(library, #name));                  \
        isComplete = libav::name != nullptr;                                                       \
    }
    HALVANE_LIBAV_FUNCTIONS(HALVANE_LOOK_UP)
#undef HALVANE_LOOK_UP
    if (isComplete) {
        av_max_alloc(largestBlock);
        return {};
    }
    return Failure{u"The decoding library is missing: "_s + QString::fromLocal8Bit(dlerror())};
}

} // namespace

Result<> load() {
    static const Result<> loaded = loadOnce();
    return loaded;
}

} // namespace halvane::libav
