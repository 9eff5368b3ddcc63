#pragma once

// GIO has a struct member named `signals`, which Qt headers define as a macro.
#pragma push_macro("signals")
#undef signals
#include <gio/gio.h>
#pragma pop_macro("signals")

#include <functional>
#include <memory>
#include <utility>

/// Releases a reference to a GObject.
struct GObjectUnref {
    template <typename T>
    void operator()(T* object) const {
        g_object_unref(object);
    }
};

/// Owns one reference to a GObject.
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// Frees the GLib types that are not GObjects.
struct GRelease {
    void operator()(char* text) const { g_free(text); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
    void operator()(GDateTime* time) const { g_date_time_unref(time); }
    void operator()(GTimeZone* zone) const { g_time_zone_unref(zone); }
};

/// Owns a string, error, variant, time or time zone of GLib.
template <typename T>
using GPtr = std::unique_ptr<T, GRelease>;

/// Passed as a `T**` argument: after the call, the smart pointer owns what the callee stored.
template <typename Smart>
class Out {
public:
    explicit Out(Smart& target) : m_target(target) {}
    ~Out() { m_target.reset(m_stored); }
    Out(const Out&) = delete;
    Out& operator=(const Out&) = delete;

    operator typename Smart::pointer *() { return &m_stored; }

private:
    Smart& m_target;
    typename Smart::pointer m_stored = nullptr;
};

/// Handles the result of an asynchronous call. The first argument is the object it was called on, or null.
using AsyncHandler = std::function<void(GObject*, GAsyncResult*)>;

/// The callback for an asynchronous call whose user data is `onceDone(handler)`. GIO calls it exactly once, on the
/// thread that started the call.
inline void runAsyncHandler(GObject* source, GAsyncResult* result, gpointer handler) {
    (*std::unique_ptr<AsyncHandler>(static_cast<AsyncHandler*>(handler)))(source, result);
}

/// User data for `runAsyncHandler`, which frees it.
[[nodiscard]] inline gpointer onceDone(AsyncHandler handler) {
    return std::make_unique<AsyncHandler>(std::move(handler)).release();
}
