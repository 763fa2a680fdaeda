// Exports into a real Evolution Data Server, read back through its own libraries as its calendar and address book do.
#include <gtest/gtest.h>
#include <libebook/libebook.h>
#include <libecal/libecal.h>

#include <filesystem>

#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "integration/PocketOutlook.h"
#include "platform/posix/DesktopPersonalStore.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/fakes/TestSettings.h"

namespace quillary {

namespace {

using Property = ContactProperty;

std::vector<Appointment> Appointments() {
    Appointment talk;
    talk.date = 46162;  // 20 May 2026
    talk.isDateRead = true;
    talk.startTime = 0.5;
    talk.subject = u"Trips; Ärger, 漢";
    talk.body = u"A: 1\n\rB: two\r\nlines";
    Appointment day = talk;
    day.startTime = 0;
    return {talk, talk, day};
}

Contact SomeContact() {
    Contact contact;
    for (std::size_t k = 0; k < kContactProperties; ++k) {
        contact.texts[k] = u"é" + std::u16string(1, static_cast<char16_t>(u'A' + k)) + u"; x,y\\z";
    }
    contact.texts[static_cast<std::size_t>(Property::Notes)] = u"one\r\ntwo";
    contact.birthday = 25569;  // 1 January 1970
    contact.anniversary = 36585;
    return contact;
}

void Export() {
    TestSettings settings;
    ScriptedQuestions questions;
    CPocketOutlook outlook(std::make_unique<DesktopPersonalStore>(settings, QUILLARY_EVOLUTION), questions);
    ASSERT_TRUE(outlook.IsUsable());
    for (const Appointment& appointment : Appointments()) EXPECT_TRUE(outlook.CreateAppointment(appointment));
    EXPECT_TRUE(outlook.CreateContact(SomeContact()));
    EXPECT_TRUE(outlook.CreateContact(SomeContact()));
    EXPECT_TRUE(outlook.Files().empty());
}

std::string Text(gpointer contact, EContactField field) {
    const auto* text = static_cast<const char*>(e_contact_get_const(E_CONTACT(contact), field));
    return text ? text : "none";
}

void ExpectEvents(ESourceRegistry* registry) {
    ESource* source = e_source_registry_ref_default_calendar(registry);
    EClient* client =
        e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, static_cast<guint32>(-1), nullptr, nullptr);
    ASSERT_TRUE(client);
    GSList* events = nullptr;
    ASSERT_TRUE(e_cal_client_get_object_list_sync(E_CAL_CLIENT(client), "#t", &events, nullptr, nullptr));
    EXPECT_EQ(3U, g_slist_length(events));
    std::vector<std::string> starts;
    for (GSList* at = events; at; at = at->next) {
        auto* event = I_CAL_COMPONENT(at->data);
        EXPECT_STREQ("Trips; Ärger, 漢", i_cal_component_get_summary(event));
        EXPECT_STREQ("A: 1\nB: two\nlines", i_cal_component_get_description(event));
        ICalTime* start = i_cal_component_get_dtstart(event);
        ICalTime* end = i_cal_component_get_dtend(event);
        EXPECT_EQ(nullptr, i_cal_time_get_timezone(start));
        starts.push_back(std::string(i_cal_time_as_ical_string(start)) + "-" + i_cal_time_as_ical_string(end));
        g_object_unref(start);
        g_object_unref(end);
    }
    std::sort(starts.begin(), starts.end());
    EXPECT_EQ((std::vector<std::string>{"20260520-20260521", "20260520T120000-20260520T000000",
                                        "20260520T120000-20260520T000000"}),
              starts);
    g_slist_free_full(events, g_object_unref);
    g_object_unref(client);
    g_object_unref(source);
}

void ExpectContacts(ESourceRegistry* registry) {
    ESource* source = e_source_registry_ref_default_address_book(registry);
    EClient* client = e_book_client_connect_sync(source, static_cast<guint32>(-1), nullptr, nullptr);
    ASSERT_TRUE(client);
    GSList* contacts = nullptr;
    ASSERT_TRUE(e_book_client_get_contacts_sync(E_BOOK_CLIENT(client), "(contains \"x-evolution-any-field\" \"\")",
                                                &contacts, nullptr, nullptr));
    ASSERT_EQ(2U, g_slist_length(contacts));
    gpointer contact = contacts->data;

    const struct {
        EContactField field;
        Property property;
    } kFields[] = {
        {E_CONTACT_FAMILY_NAME, Property::LastName},
        {E_CONTACT_GIVEN_NAME, Property::FirstName},
        {E_CONTACT_TITLE, Property::JobTitle},
        {E_CONTACT_ORG, Property::Company},
        {E_CONTACT_ORG_UNIT, Property::Department},
        {E_CONTACT_OFFICE, Property::OfficeLocation},
        {E_CONTACT_PHONE_BUSINESS, Property::WorkPhone},
        {E_CONTACT_PHONE_BUSINESS_2, Property::WorkPhone2},
        {E_CONTACT_PHONE_BUSINESS_FAX, Property::WorkFax},
        {E_CONTACT_PHONE_HOME, Property::HomePhone},
        {E_CONTACT_PHONE_HOME_2, Property::HomePhone2},
        {E_CONTACT_PHONE_HOME_FAX, Property::HomeFax},
        {E_CONTACT_PHONE_MOBILE, Property::MobilePhone},
        {E_CONTACT_PHONE_CAR, Property::CarPhone},
        {E_CONTACT_PHONE_RADIO, Property::RadioPhone},
        {E_CONTACT_PHONE_PAGER, Property::Pager},
        {E_CONTACT_PHONE_ASSISTANT, Property::AssistantPhone},
        {E_CONTACT_EMAIL_1, Property::EMail},
        {E_CONTACT_EMAIL_2, Property::EMail2},
        {E_CONTACT_EMAIL_3, Property::EMail3},
        {E_CONTACT_HOMEPAGE_URL, Property::WebPage},
        {E_CONTACT_ASSISTANT, Property::AssistantName},
        {E_CONTACT_SPOUSE, Property::Spouse},
    };
    for (const auto& row : kFields) {
        const char letter = static_cast<char>('A' + static_cast<int>(row.property));
        EXPECT_EQ(std::string("é") + letter + "; x,y\\z", Text(contact, row.field)) << e_contact_field_name(row.field);
    }
    EXPECT_EQ("one\ntwo", Text(contact, E_CONTACT_NOTE));
    EXPECT_NE(std::string::npos, Text(contact, E_CONTACT_FILE_AS).find("éA; x,y\\z, éB")) << "last name first";

    const struct {
        EContactField field;
        Property street;
    } kAddresses[] = {{E_CONTACT_ADDRESS_WORK, Property::WorkStreet},
                      {E_CONTACT_ADDRESS_HOME, Property::HomeStreet},
                      {E_CONTACT_ADDRESS_OTHER, Property::OtherStreet}};
    for (const auto& row : kAddresses) {
        auto* address = static_cast<EContactAddress*>(e_contact_get(E_CONTACT(contact), row.field));
        ASSERT_TRUE(address) << e_contact_field_name(row.field);
        const char* const parts[] = {address->street, address->locality, address->region, address->code,
                                     address->country};
        for (int k = 0; k < 5; ++k) {
            const char letter = static_cast<char>('A' + static_cast<int>(row.street) + k);
            EXPECT_EQ(std::string("é") + letter + "; x,y\\z", parts[k]) << e_contact_field_name(row.field);
        }
        e_contact_address_free(address);
    }
    const struct {
        EContactField field;
        unsigned year, month, day;
    } kDates[] = {{E_CONTACT_BIRTH_DATE, 1970, 1, 1}, {E_CONTACT_ANNIVERSARY, 2000, 2, 29}};
    for (const auto& row : kDates) {
        auto* date = static_cast<EContactDate*>(e_contact_get(E_CONTACT(contact), row.field));
        ASSERT_TRUE(date) << e_contact_field_name(row.field);
        EXPECT_EQ((std::vector{row.year, row.month, row.day}), (std::vector{date->year, date->month, date->day}));
        e_contact_date_free(date);
    }
    g_slist_free_full(contacts, g_object_unref);
    g_object_unref(client);
    g_object_unref(source);
}

TEST(Evolution, ExportedTwiceEveryItemIsThereOnce) {
    Export();
    Export();
    GError* error = nullptr;
    ESourceRegistry* registry = e_source_registry_new_sync(nullptr, &error);
    ASSERT_TRUE(registry) << error->message;
    ExpectEvents(registry);
    ExpectContacts(registry);
    g_object_unref(registry);
}

}  // namespace

}  // namespace quillary
