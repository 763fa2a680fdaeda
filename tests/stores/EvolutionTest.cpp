// Exports into a real Evolution Data Server, read back through its own libraries as its calendar and address book do.
#include <gtest/gtest.h>
#include <libebook/libebook.h>
#include <libecal/libecal.h>

#include <algorithm>

#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "integration/PocketOutlook.h"
#include "platform/evolution/ServerCalls.h"
#include "platform/posix/DesktopPersonalStore.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/fakes/TestSettings.h"

namespace quillary {
namespace {

using Property = ContactProperty;
constexpr auto kDoNotWait = static_cast<guint32>(-1);
constexpr const char* kAll = "(contains \"x-evolution-any-field\" \"\")";

std::string TextOf(Property property) {
    return "é" + std::string(1, static_cast<char>('A' + static_cast<int>(property))) + "; x,y\\z\nend";
}

void Export() {
    TestSettings settings;
    ScriptedQuestions questions;
    CPocketOutlook outlook(std::make_unique<DesktopPersonalStore>(settings, QUILLARY_EVOLUTION), questions);
    const Appointment talk{46162, true, 0.5, 0, u"Trips; Ärger, 漢", u"A: 1\n\rB: two\r\nlines"};
    Appointment day = talk;
    day.startTime = 0;
    for (const Appointment& appointment : {talk, talk, day}) EXPECT_TRUE(outlook.CreateAppointment(appointment));
    Contact contact;
    for (std::size_t k = 0; k < kContactProperties; ++k) {
        contact.texts[k] = u"é" + std::u16string(1, static_cast<char16_t>(u'A' + k)) + u"; x,y\\z\r\nend";
    }
    contact.birthday = 25569;
    contact.anniversary = 36585;
    for (int k = 0; k < 2; ++k) EXPECT_TRUE(outlook.CreateContact(contact));
}

void ExpectEvents(ESourceRegistry* registry) {
    const Owned<ESource> source(e_source_registry_ref_default_calendar(registry));
    const Owned<EClient> client(
        e_cal_client_connect_sync(source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, kDoNotWait, nullptr, nullptr));
    GSList* events = nullptr;
    ASSERT_TRUE(client &&
                e_cal_client_get_object_list_sync(E_CAL_CLIENT(client.get()), "#t", &events, nullptr, nullptr));
    std::vector<std::string> times;
    for (GSList* at = events; at; at = at->next) {
        auto* event = I_CAL_COMPONENT(at->data);
        EXPECT_STREQ("Trips; Ärger, 漢", i_cal_component_get_summary(event));
        EXPECT_STREQ("A: 1\nB: two\nlines", i_cal_component_get_description(event));
        const Owned<ICalTime> start(i_cal_component_get_dtstart(event));
        const Owned<ICalTime> end(i_cal_component_get_dtend(event));
        EXPECT_EQ(nullptr, i_cal_time_get_timezone(start.get()));
        times.push_back(std::string(i_cal_time_as_ical_string(start.get())) + "-" +
                        i_cal_time_as_ical_string(end.get()));
    }
    std::sort(times.begin(), times.end());
    const std::string talk = "20260520T120000-20260520T000000";
    EXPECT_EQ((std::vector<std::string>{"20260520-20260521", talk, talk}), times);
    g_slist_free_full(events, g_object_unref);
}

void ExpectContacts(ESourceRegistry* registry) {
    const Owned<ESource> source(e_source_registry_ref_default_address_book(registry));
    const Owned<EClient> client(e_book_client_connect_sync(source.get(), kDoNotWait, nullptr, nullptr));
    GSList* contacts = nullptr;
    ASSERT_TRUE(client &&
                e_book_client_get_contacts_sync(E_BOOK_CLIENT(client.get()), kAll, &contacts, nullptr, nullptr));
    ASSERT_EQ(2U, g_slist_length(contacts));
    auto* contact = E_CONTACT(contacts->data);
    // What other readers do not tell apart, or Evolution has its own names for.
    const std::pair<EContactField, Property> kFields[] = {{E_CONTACT_FAMILY_NAME, Property::LastName},
                                                          {E_CONTACT_OFFICE, Property::OfficeLocation},
                                                          {E_CONTACT_PHONE_BUSINESS_2, Property::WorkPhone2},
                                                          {E_CONTACT_PHONE_HOME_FAX, Property::HomeFax},
                                                          {E_CONTACT_PHONE_CAR, Property::CarPhone},
                                                          {E_CONTACT_PHONE_RADIO, Property::RadioPhone},
                                                          {E_CONTACT_PHONE_ASSISTANT, Property::AssistantPhone},
                                                          {E_CONTACT_EMAIL_3, Property::EMail3},
                                                          {E_CONTACT_HOMEPAGE_URL, Property::WebPage},
                                                          {E_CONTACT_ASSISTANT, Property::AssistantName},
                                                          {E_CONTACT_SPOUSE, Property::Spouse}};
    for (const auto& [field, property] : kFields) {
        const auto* text = static_cast<const char*>(e_contact_get_const(contact, field));
        EXPECT_EQ(TextOf(property), text ? text : "none") << e_contact_field_name(field);
    }
    auto* address = static_cast<EContactAddress*>(e_contact_get(contact, E_CONTACT_ADDRESS_OTHER));
    ASSERT_TRUE(address);
    EXPECT_EQ(TextOf(Property::OtherCity), address->locality);
    e_contact_address_free(address);
    auto* date = static_cast<EContactDate*>(e_contact_get(contact, E_CONTACT_ANNIVERSARY));
    ASSERT_TRUE(date);
    EXPECT_EQ((std::vector{2000U, 2U, 29U}), (std::vector{date->year, date->month, date->day}));
    e_contact_date_free(date);
    g_slist_free_full(contacts, g_object_unref);
}

TEST(Evolution, ExportedTwiceEveryItemIsThereOnce) {
    Export();
    Export();
    const Owned<ESourceRegistry> registry(e_source_registry_new_sync(nullptr, nullptr));
    ASSERT_TRUE(registry);
    ExpectEvents(registry.get());
    ExpectContacts(registry.get());
}

}  // namespace
}  // namespace quillary
