// SPDX-License-Identifier: MIT
#pragma once

// The header names an argument after a keyword.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define namespace namespace_
#include <wayland-wlr-layer-shell-unstable-v1.h>
#undef namespace
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace LayerShellProtocol {
/// The first version whose global can be destroyed.
inline constexpr uint32_t destroyableVersion = 3;
/// A layer as large as the screen, less what its exclusive zone makes room for.
inline constexpr uint32_t everyEdge =
    ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
} // namespace LayerShellProtocol
