// The session of an export: what it says when there is no store, and the names that it gives to items.
#include "integration/PocketOutlook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {

namespace {

struct Seen {
    std::vector<std::string> uids;
    std::string calls;
};

class ListingStore : public PersonalStore {
  public:
    ListingStore(Seen& seen, bool creates, bool logsOn) : m_seen(seen), m_creates(creates), m_logsOn(logsOn) {}
    bool Create() override { return m_seen.calls += 'c', m_creates; }
    bool LogOn() override { return m_seen.calls += 'l', m_logsOn; }
    bool AddAppointment(const Appointment&, const std::string& uid) override { return Add(uid); }
    bool AddContact(const Contact&, const std::string& uid) override { return Add(uid); }

  private:
    bool Add(const std::string& uid) {
        m_seen.uids.push_back(uid);
        return true;
    }
    Seen& m_seen;
    bool m_creates;
    bool m_logsOn;
};

TEST(PocketOutlook, SaysOnceThatThereIsNoStore) {
    const struct {
        bool creates, logsOn;
        std::string calls;
        std::vector<Message> told;
    } kCases[] = {{false, true, "c", {Message::NoPersonalStore}},
                  {true, false, "cl", {Message::NoLogOn}},
                  {true, true, "cl", {}}};
    for (const auto& c : kCases) {
        Seen seen;
        ScriptedQuestions questions;
        CPocketOutlook outlook(std::make_unique<ListingStore>(seen, c.creates, c.logsOn), questions);
        EXPECT_EQ(c.told.empty(), outlook.IsUsable());
        EXPECT_EQ(c.told.empty(), outlook.CreateAppointment({}));
        EXPECT_EQ(c.told.empty(), outlook.CreateContact({}));
        EXPECT_EQ(c.calls, seen.calls);
        EXPECT_EQ(c.told, questions.told);
        EXPECT_EQ(c.told.empty() ? 2U : 0U, seen.uids.size());
    }
    EXPECT_EQ("CPocketOutlook constructor Failed!!", MessageText(Message::NoPersonalStore));
    EXPECT_EQ("Could not log on to Pocket Outlook!", MessageText(Message::NoLogOn));
}

std::vector<std::string> NamesOf(const std::vector<Appointment>& appointments, const std::vector<Contact>& contacts) {
    Seen seen;
    ScriptedQuestions questions;
    CPocketOutlook outlook(std::make_unique<ListingStore>(seen, true, true), questions);
    for (const Appointment& appointment : appointments) EXPECT_TRUE(outlook.CreateAppointment(appointment));
    for (const Contact& contact : contacts) EXPECT_TRUE(outlook.CreateContact(contact));
    return seen.uids;
}

TEST(PocketOutlook, ItemsThatDifferHaveNamesThatDifferAndTheSameInEveryRun) {
    Appointment plain;
    plain.date = 36526;
    plain.startTime = 0.5;
    plain.subject = u"Trips";
    plain.body = u"A: 1";
    std::vector<Appointment> appointments{plain, plain, plain};  // equal ones are counted
    const std::function<void(Appointment&)> kChanges[] = {
        [](Appointment& a) { a.date += 1; },         [](Appointment& a) { a.startTime = 0; },
        [](Appointment& a) { a.endTime = 0.5; },     [](Appointment& a) { a.subject = u"Trip"; },
        [](Appointment& a) { a.body = u"A: 2"; },    [](Appointment& a) { a.subject = u"TripsA", a.body = u": 1"; },
        [](Appointment& a) { a.startTime = 0.501; }, [](Appointment& a) { a.body = u"\x4100: 1"; },
    };
    for (const auto& change : kChanges) {
        appointments.push_back(plain);
        change(appointments.back());
    }
    Contact contact;
    std::vector<Contact> contacts{contact, contact};
    for (std::size_t k = 0; k < kContactProperties; ++k) {
        contacts.emplace_back();
        contacts.back().texts[k] = u"x";
    }
    for (const std::optional<double> day : {0.0, 1.0}) {
        contacts.emplace_back().birthday = day;
        contacts.emplace_back().anniversary = day;
    }

    const auto names = NamesOf(appointments, contacts);
    // All but the equal ones are the first of their kind.
    EXPECT_EQ(names.size(), std::set<std::string>(names.begin(), names.end()).size());
    EXPECT_EQ(3,
              std::count_if(names.begin(), names.end(), [](const std::string& name) { return !name.ends_with("-1"); }));
    EXPECT_EQ(names, NamesOf(appointments, contacts));
    // Whoever exported with an earlier version finds the same items again. Computed outside this program.
    EXPECT_EQ("quillary-94772dbb06624307ce9502fedbf0b71d-1", names[0]);
    EXPECT_EQ(names[0].substr(0, names[0].size() - 1) + "3", names[2]);

    // A fraction that was computed in another way.
    Appointment other = plain;
    other.startTime = 0.1 + 0.4 + 1e-9;
    EXPECT_EQ(names[0], NamesOf({other}, {})[0]);
}

}  // namespace

}  // namespace quillary
