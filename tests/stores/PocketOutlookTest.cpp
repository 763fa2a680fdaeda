// The session of an export gives names to items.
#include "integration/PocketOutlook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/fakes/FakePersonalStore.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using Names = std::vector<std::string>;

Names NamesOf(const std::vector<Appointment>& appointments, const std::vector<Contact>& contacts) {
    const auto items = std::make_shared<FakePersonalItems>();
    ScriptedQuestions questions;
    CPocketOutlook outlook(std::make_unique<FakePersonalStore>(items), questions);
    for (const Appointment& appointment : appointments) EXPECT_TRUE(outlook.CreateAppointment(appointment));
    for (const Contact& contact : contacts) EXPECT_TRUE(outlook.CreateContact(contact));
    return items->uids;
}

TEST(PocketOutlook, ItemsThatDifferHaveNamesThatDifferAndTheSameInEveryRun) {
    const Appointment plain{36526, true, 0.5, 0, u"Trips", u"A: 1"};
    const std::vector<Appointment> appointments{plain,
                                                plain,
                                                plain,  // equal ones are counted
                                                {36527, true, 0.5, 0, u"Trips", u"A: 1"},
                                                {36526, true, 0.501, 0, u"Trips", u"A: 1"},
                                                {36526, true, 0.5, 0.5, u"Trips", u"A: 1"},
                                                {36526, true, 0.5, 0, u"Trip", u"A: 1"},
                                                {36526, true, 0.5, 0, u"Trips", u"\x4100: 1"},
                                                {36526, true, 0.5, 0, u"TripsA", u": 1"}};
    std::vector<Contact> contacts(1);
    for (std::size_t k = 0; k < kContactProperties; ++k) contacts.emplace_back().texts[k] = u"x";
    for (const double day : {0.0, 1.0}) {
        contacts.emplace_back().birthday = day;
        contacts.emplace_back().anniversary = day;
    }
    const auto names = NamesOf(appointments, contacts);
    EXPECT_EQ(names.size(), std::set<std::string>(names.begin(), names.end()).size());
    EXPECT_EQ(2, std::count_if(names.begin(), names.end(), [](const auto& name) { return !name.ends_with("-1"); }));
    // Whoever exported with an earlier version finds the same items again. Computed outside this program.
    EXPECT_EQ("quillary-94772dbb06624307ce9502fedbf0b71d-1", names[0]);
    EXPECT_EQ(names[0], NamesOf({{36526, true, 0.1 + 0.4 + 1e-9, 0, u"Trips", u"A: 1"}}, {})[0]);
}

}  // namespace
}  // namespace quillary
