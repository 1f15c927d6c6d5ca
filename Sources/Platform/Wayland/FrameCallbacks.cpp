// SPDX-License-Identifier: MIT
// Keeps QtWayland's frame callbacks on the main thread.
//
// QtWayland up to 6.7 handles the compositor's answer to a painted frame on a thread of its own. It
// destroys the callback there without a lock, and so does the main thread when it hides that
// window: now and then both do, and libwayland ends the program ("wl_proxy_unref: Assertion
// `proxy->refcount > 0' failed"). The thread serves one event queue, into which Qt puts the wrapper
// of a surface before each request for a frame; nothing else puts a surface into a queue. So this
// function, which the dynamic linker finds before libwayland's, leaves surfaces in the queue of the
// main thread. Windows painted without OpenGL, as all of ours are, never wait for that other
// thread.

#include <QLibraryInfo>
#include <QVersionNumber>

#include <cstring>
#include <dlfcn.h>
#include <wayland-client.h>

extern "C" __attribute__((visibility("default"))) void wl_proxy_set_queue(wl_proxy *proxy,
                                                                          wl_event_queue *queue)
{
    using SetQueue = decltype(&wl_proxy_set_queue);
    static const auto setQueue = reinterpret_cast<SetQueue>(dlsym(RTLD_NEXT, "wl_proxy_set_queue"));
    // 6.8 was seen to ask under its lock whether the callback is still the window's.
    static const bool hasRace = QLibraryInfo::version() < QVersionNumber(6, 8);
    const bool isFrame =
        hasRace && queue && std::strcmp(wl_proxy_get_class(proxy), wl_surface_interface.name) == 0;
    setQueue(proxy, isFrame ? nullptr : queue);
}
