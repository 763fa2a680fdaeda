#include "platform/X11Activation.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>
#endif

namespace quillary {

#if QT_CONFIG(xcb)

namespace {

constexpr std::size_t kMaxIdSize = 1000;
constexpr std::size_t kPieceSize = 20;  // of a text in client messages
constexpr std::uint32_t kFromApplication = 1;

xcb_atom_t Atom(xcb_connection_t* x, std::string_view name) {
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(x, cookie, nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);  // allocated by the library
    return atom;
}

xcb_client_message_event_t ClientMessage(xcb_window_t window, xcb_atom_t type, std::uint8_t format) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.window = window;
    message.type = type;
    message.format = format;
    return message;
}

void SendToRoot(xcb_connection_t* x, std::uint32_t listeners, const xcb_client_message_event_t& message) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_send_event(x, 0, root, listeners, reinterpret_cast<const char*>(&message));
}

/// Ids end in "_TIME" and the server's time of the click that caused the start.
std::optional<xcb_timestamp_t> TimeOf(std::string_view id) {
    constexpr std::string_view kMark = "_TIME";
    const auto mark = id.rfind(kMark);
    if (mark == id.npos) return std::nullopt;
    xcb_timestamp_t time = 0;
    const char* const end = id.data() + id.size();
    const auto read = std::from_chars(id.data() + mark + kMark.size(), end, time);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(time) : std::nullopt;
}

void TellStartIsOver(xcb_connection_t* x, xcb_window_t window, std::string_view id) {
    std::string text = "remove: ID=\"";
    for (const char c : id) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    text += '"';
    text += '\0';
    xcb_atom_t type = Atom(x, "_NET_STARTUP_INFO_BEGIN");
    for (std::size_t at = 0; at < text.size(); at += kPieceSize) {
        auto message = ClientMessage(window, type, 8);
        std::memcpy(message.data.data8, text.data() + at, std::min(kPieceSize, text.size() - at));
        SendToRoot(x, XCB_EVENT_MASK_PROPERTY_CHANGE, message);
        type = Atom(x, "_NET_STARTUP_INFO");
    }
}

}  // namespace

bool ActivateOnX11(QWindow& window, const std::string& startupId) {
    const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!display || startupId.empty() || startupId.size() > kMaxIdSize) return false;
    xcb_connection_t* const x = display->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto time = TimeOf(startupId);
    if (time) {
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, id, Atom(x, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1,
                            &*time);
        auto message = ClientMessage(id, Atom(x, "_NET_ACTIVE_WINDOW"), 32);
        message.data.data32[0] = kFromApplication;
        message.data.data32[1] = *time;
        SendToRoot(x, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, message);
    }
    TellStartIsOver(x, id, startupId);
    xcb_flush(x);
    return time.has_value();
}

#else

bool ActivateOnX11(QWindow&, const std::string&) { return false; }

#endif

}  // namespace quillary
