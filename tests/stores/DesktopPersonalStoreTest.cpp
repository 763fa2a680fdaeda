// Which store an export gets, and the files that it leaves.
#include "platform/posix/DesktopPersonalStore.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "admin/Settings.h"
#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "tests/fakes/TestSettings.h"
#include "tests/posix/TestFolder.h"

namespace quillary {

namespace {

Appointment SomeAppointment() {
    Appointment appointment;
    appointment.subject = u"Trips";
    return appointment;
}

TEST(DesktopPersonalStore, ChoosesWhatTheSessionHas) {
    const TestFolder folder;
    const Path noLibrary = folder.Write("no-library.so", "text");
    enum class Comes { Files, Module, Nothing };
    const struct {
        const char* why;
        const char *bus, *preference;
        Path module;
        const char* fake;
        Comes comes;
    } kCases[] = {
        {"Evolution's", "unix:path=/x", "", QUILLARY_FAKE_EVOLUTION, "works", Comes::Module},
        {"another preference", "unix:path=/x", "file", QUILLARY_FAKE_EVOLUTION, "works", Comes::Module},
        {"one that fails is no reason for files", "unix:path=/x", "", QUILLARY_FAKE_EVOLUTION, "fails", Comes::Nothing},
        {"no server in the session", "unix:path=/x", "", QUILLARY_FAKE_EVOLUTION, "none", Comes::Files},
        {"the user wants files", "unix:path=/x", "files", QUILLARY_FAKE_EVOLUTION, "works", Comes::Files},
        {"no session bus", nullptr, "", QUILLARY_FAKE_EVOLUTION, "works", Comes::Files},
        {"nor an empty one", "", "", QUILLARY_FAKE_EVOLUTION, "works", Comes::Files},
        {"no module", "unix:path=/x", "", "", "works", Comes::Files},
        {"one that the machine cannot load", "unix:path=/x", "", noLibrary, "works", Comes::Files},
        {"nothing of the working directory", "unix:path=/x", "", std::filesystem::relative(QUILLARY_FAKE_EVOLUTION),
         "works", Comes::Files},
    };
    for (const auto& c : kCases) {
        const Environment data("XDG_DATA_HOME", (folder / "data").c_str());
        const Environment bus("DBUS_SESSION_BUS_ADDRESS", c.bus);
        const Environment fake("QUILLARY_FAKE", c.fake);
        TestSettings settings;
        settings.texts["PersonalStore"] = c.preference;
        DesktopPersonalStore store(settings, c.module);
        EXPECT_TRUE(store.Files().empty()) << c.why;
        ASSERT_EQ(c.comes != Comes::Nothing, store.Create()) << c.why;
        if (c.comes == Comes::Nothing) continue;
        EXPECT_TRUE(store.LogOn() && store.AddAppointment(SomeAppointment(), "u1")) << c.why;
        EXPECT_EQ(c.comes == Comes::Files, !store.Files().empty()) << c.why;
    }
}

class ExportedFiles : public testing::Test {
  protected:
    ExportedFiles() { m_settings.texts["PersonalStore"] = "files"; }

    bool Open(DesktopPersonalStore& store) { return store.Create() && store.LogOn(); }
    [[nodiscard]] std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder.Root())) {
            if (!entry.is_directory()) names.push_back(entry.path().lexically_relative(m_folder.Root()));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    TestFolder m_folder;
    Environment m_data{"XDG_DATA_HOME", (m_folder / "data").c_str()};
    TestSettings m_settings;
};

TEST_F(ExportedFiles, AreOneForEachItemForTheUserAlone) {
    {
        DesktopPersonalStore store(m_settings);
        ASSERT_TRUE(Open(store));
        EXPECT_TRUE(store.AddAppointment(SomeAppointment(), "u1"));
        EXPECT_TRUE(store.AddContact({}, "u1"));
        EXPECT_EQ(
            (std::vector<Path>{m_folder / "data/quillary/calendar/u1.ics", m_folder / "data/quillary/contacts/u1.vcf"}),
            store.Files());
    }
    EXPECT_EQ((std::vector<std::string>{"data/quillary/calendar/u1.ics", "data/quillary/contacts/u1.vcf"}), Names());
    for (const char* name : {"data/quillary", "data/quillary/calendar", "data/quillary/calendar/u1.ics"}) {
        struct stat status {};
        ASSERT_EQ(0, stat((m_folder / name).c_str(), &status));
        EXPECT_EQ(S_ISDIR(status.st_mode) ? 0700U : 0600U, status.st_mode & 0777) << name;
    }

    // What the user has made of one since then stays.
    m_folder.Write("data/quillary/calendar/u1.ics", "edited");
    DesktopPersonalStore again(m_settings);
    ASSERT_TRUE(Open(again));
    EXPECT_TRUE(again.AddAppointment(SomeAppointment(), "u1"));
    EXPECT_EQ(1U, again.Files().size());
    EXPECT_EQ("edited", FileBytes(m_folder / "data/quillary/calendar/u1.ics"));
}

TEST_F(ExportedFiles, RefuseFoldersThatCannotHoldThem) {
    const auto refuses = [this](const Path& data) {
        return AsOrdinaryUser([&] {
            const Environment place("XDG_DATA_HOME", data.c_str());
            DesktopPersonalStore store(m_settings);
            return store.Create() && !store.LogOn();
        });
    };
    std::filesystem::permissions(m_folder.Root(), std::filesystem::perms(0755));
    EXPECT_TRUE(refuses(m_folder / "data"));  // cannot be made
    m_folder.Write("file/there", "");
    EXPECT_TRUE(refuses(m_folder / "file/there"));
    std::filesystem::create_directories(m_folder / "data/quillary/calendar");
    std::filesystem::create_directories(m_folder / "data/quillary/contacts");
    EXPECT_TRUE(refuses(m_folder / "data"));  // can be read alone
}

TEST_F(ExportedFiles, LeaveNothingHalfWrittenAndReplaceNothing) {
    DesktopPersonalStore store(m_settings);
    ASSERT_TRUE(Open(store));
    std::filesystem::create_directories(m_folder / "data/quillary/calendar/folder.ics");
    std::filesystem::create_symlink(m_folder / "elsewhere", m_folder / "data/quillary/calendar/link.ics");
    EXPECT_FALSE(store.AddAppointment(SomeAppointment(), "folder"));
    EXPECT_FALSE(store.AddAppointment(SomeAppointment(), "link"));
    // A full disk, at the first bytes and at the last ones.
    for (const rlim_t room : {0, 100}) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{room, room};
            setrlimit(RLIMIT_FSIZE, &limit);
            _exit(store.AddAppointment(SomeAppointment(), "full") ? 1 : 0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status) << room;
    }
    EXPECT_EQ((std::vector<std::string>{"data/quillary/calendar/link.ics"}), Names());
    EXPECT_TRUE(store.Files().empty());
}

}  // namespace

}  // namespace quillary
