#include "workbench/screendensity.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

template <typename Type, void (*release)(Type *)>
struct Releaser
{
    void operator()(Type *object) const { release(object); }
};

template <typename Type>
struct Freed
{
    void operator()(Type *object) const { std::free(object); }
};

/// The resources of the X server, a line each; empty where there is no server.
QByteArray resources()
{
    constexpr quint32 mostWords = 64 * 1024;
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, Releaser<xcb_connection_t, xcb_disconnect>> connection(
        xcb_connect(nullptr, &screen));
    const xcb_setup_t *setup = xcb_connection_has_error(connection.get()) ? nullptr : xcb_get_setup(connection.get());
    if (!setup)
        return {};
    const xcb_window_t root = xcb_setup_roots_iterator(setup).data->root;
    const std::unique_ptr<xcb_get_property_reply_t, Freed<xcb_get_property_reply_t>> reply(
        xcb_get_property_reply(connection.get(),
            xcb_get_property(connection.get(), 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, mostWords),
            nullptr));
    if (!reply)
        return {};
    return { static_cast<const char *>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

bool statesDensity()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (qEnvironmentVariableIsEmpty("DISPLAY") || (!platform.isEmpty() && !platform.startsWith("xcb")))
        return false;
    const QList<QByteArray> lines = resources().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Xft.dpi:"))
            return line.mid(line.indexOf(':') + 1).trimmed().toDouble() > 0;
    }
    return false;
}

} // namespace

void Workbench::scaleAsChosen()
{
    if (statesDensity())
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}
