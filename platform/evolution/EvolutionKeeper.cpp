#include "platform/evolution/EvolutionKeeper.h"

#include <string_view>

#include "platform/posix/EvolutionModule.h"

namespace quillary {

namespace {

using namespace std::chrono_literals;

constexpr auto kBusLimit = 5s;
constexpr auto kStartLimit = 60s;  // on a busy machine the server takes 20 s to start
constexpr auto kItemLimit = 30s;
constexpr auto kOnlineLimit = 10s;                     // for a calendar that lies on another machine
constexpr auto kDoNotWait = static_cast<guint32>(-1);  // as WaitUntil does it

// Of the server's interface, whose number the libraries and the server share.
constexpr std::string_view kServerName = "org.gnome.evolution.dataserver.Sources5";

class Error {
  public:
    Error() = default;
    ~Error() { g_clear_error(&m_error); }
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;

    GError** Out() { return &m_error; }
    [[nodiscard]] std::string Text() const { return m_error ? m_error->message : std::string(); }
    [[nodiscard]] bool Is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code); }

  private:
    GError* m_error = nullptr;
};

// Whether the bus names the server in the answer to `method`.
bool BusNames(GDBusConnection* bus, const char* method, GCancellable* cancellable) {
    Error error;
    GVariant* answer = g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", method, nullptr, G_VARIANT_TYPE("(as)"),
                                                   G_DBUS_CALL_FLAGS_NONE, G_MAXINT, cancellable, error.Out());
    if (!answer) return false;
    bool found = false;
    GVariantIter* names = nullptr;
    const char* name = nullptr;
    g_variant_get(answer, "(as)", &names);
    while (g_variant_iter_next(names, "&s", &name)) found = found || name == kServerName;
    g_variant_iter_free(names);
    g_variant_unref(answer);
    return found;
}

}  // namespace

bool EvolutionKeeper::IsOffered() {
    return m_calls.Within(kBusLimit, [](GCancellable* cancellable) {
        Error error;
        const Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.Out()));
        if (!bus) return false;
        // The end of the bus would end this process, with whatever is unsaved in its window.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        return BusNames(bus.get(), "ListActivatableNames", cancellable) ||
               BusNames(bus.get(), "ListNames", cancellable);
    });
}

bool EvolutionKeeper::Create() {
    m_registry = m_calls.Within(kStartLimit, [](GCancellable* cancellable) {
        Error error;
        return Owned<ESourceRegistry>(e_source_registry_new_sync(cancellable, error.Out()));
    });
    return m_registry != nullptr;
}

bool EvolutionKeeper::LogOn() {
    const Owned<ESource> calendar(e_source_registry_ref_default_calendar(m_registry.get()));
    const Owned<ESource> addressBook(e_source_registry_ref_default_address_book(m_registry.get()));
    m_reason = "there is no default calendar or address book";
    if (!calendar || !addressBook) return false;
    const auto connect = [this](const auto& call) {
        auto client = m_calls.Within(kStartLimit, [this, &call](GCancellable* cancellable) {
            Error error;
            Owned<EClient> made(call(cancellable, error.Out()));
            m_reason = error.Text();
            return made;
        });
        if (m_calls.HasTimedOut()) m_reason = "Evolution's server does not answer";
        return client;
    };
    m_calendar = connect([&calendar](GCancellable* cancellable, GError** error) {
        return e_cal_client_connect_sync(calendar.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, kDoNotWait, cancellable,
                                         error);
    });
    if (!m_calendar) return false;
    m_addressBook = connect([&addressBook](GCancellable* cancellable, GError** error) {
        return e_book_client_connect_sync(addressBook.get(), kDoNotWait, cancellable, error);
    });
    if (!m_addressBook) return false;
    const auto areOnline = [this] {
        return e_client_is_online(m_calendar.get()) && e_client_is_online(m_addressBook.get());
    };
    m_calls.WaitUntil(kOnlineLimit, areOnline);
    m_reason = "Evolution's default calendar or address book cannot be written";
    return !e_client_is_readonly(m_calendar.get()) && !e_client_is_readonly(m_addressBook.get());
}

// An item that the server has been waited for in vain is not the last one, so the others are not tried.

bool EvolutionKeeper::KeepEvent(const std::string& text, const std::string&) {
    if (m_calls.HasTimedOut()) return false;
    const Owned<ICalComponent> calendar(i_cal_component_new_from_string(text.c_str()));
    const Owned<ICalComponent> event(
        calendar ? i_cal_component_get_first_component(calendar.get(), I_CAL_VEVENT_COMPONENT) : nullptr);
    if (!event) return false;
    return m_calls.Within(kItemLimit, [&](GCancellable* cancellable) {
        Error error;
        return e_cal_client_create_object_sync(E_CAL_CLIENT(m_calendar.get()), event.get(), E_CAL_OPERATION_FLAG_NONE,
                                               nullptr, cancellable, error.Out()) != FALSE ||
               error.Is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_ID_ALREADY_EXISTS);
    });
}

bool EvolutionKeeper::KeepCard(const std::string& text, const std::string& uid) {
    if (m_calls.HasTimedOut()) return false;
    const Owned<EContact> contact(e_contact_new_from_vcard_with_uid(text.c_str(), uid.c_str()));
    if (!contact) return false;
    return m_calls.Within(kItemLimit, [&](GCancellable* cancellable) {
        Error error;
        return e_book_client_add_contact_sync(E_BOOK_CLIENT(m_addressBook.get()), contact.get(),
                                              E_BOOK_OPERATION_FLAG_NONE, nullptr, cancellable, error.Out()) != FALSE ||
               error.Is(E_BOOK_CLIENT_ERROR, E_BOOK_CLIENT_ERROR_CONTACT_ID_ALREADY_EXISTS);
    });
}

}  // namespace quillary

extern "C" __attribute__((visibility("default"))) quillary::ItemKeeper* QuillaryEvolutionKeeper() {
    auto keeper = std::make_unique<quillary::EvolutionKeeper>();
    return keeper->IsOffered() ? keeper.release() : nullptr;
}
