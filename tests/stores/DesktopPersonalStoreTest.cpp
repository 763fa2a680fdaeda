// Which store an export gets, and the files that it leaves.
#include "platform/posix/DesktopPersonalStore.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "tests/fakes/TestSettings.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

class DesktopStore : public testing::Test {
  protected:
    DesktopPersonalStore Store(const char* preference = "files", Path module = {}) {
        m_settings.texts["PersonalStore"] = preference;
        return DesktopPersonalStore(m_settings, std::move(module));
    }

    const TestFolder m_folder;
    const Path m_calendar = m_folder / "data/quillary/calendar";
    const Environment m_data{"XDG_DATA_HOME", (m_folder / "data").c_str()};
    TestSettings m_settings;
};

TEST_F(DesktopStore, IsWhatTheSessionHas) {
    const Path fake = QUILLARY_FAKE_EVOLUTION;
    enum class Comes { Files, Module, Nothing };
    const struct {
        const char *why, *bus, *preference;
        Path module;
        const char* fake;
        Comes comes;
    } kCases[] = {
        {"Evolution's", "unix:path=/x", "", fake, "works", Comes::Module},
        {"one that fails is no reason for files", "unix:path=/x", "", fake, "fails", Comes::Nothing},
        {"no server in the session", "unix:path=/x", "", fake, "none", Comes::Files},
        {"the user wants files", "unix:path=/x", "files", fake, "works", Comes::Files},
        {"no session bus", nullptr, "", fake, "works", Comes::Files},
        {"no address of one", "", "", fake, "works", Comes::Files},
        {"no module", "unix:path=/x", "", "", "works", Comes::Files},
        {"none that loads", "unix:path=/x", "", m_folder.Write("no.so", "text"), "works", Comes::Files},
        {"none of the working directory", "unix:path=/x", "", std::filesystem::relative(fake), "works", Comes::Files},
    };
    for (const auto& c : kCases) {
        const Environment bus("DBUS_SESSION_BUS_ADDRESS", c.bus);
        const Environment fakes("QUILLARY_FAKE", c.fake);
        DesktopPersonalStore store = Store(c.preference, c.module);
        ASSERT_EQ(c.comes != Comes::Nothing, store.Create()) << c.why;
        if (c.comes == Comes::Nothing) continue;
        EXPECT_TRUE(store.LogOn() && store.AddAppointment({}, "u1")) << c.why;
        EXPECT_EQ(c.comes == Comes::Files, !store.Files().empty()) << c.why;
    }
}

TEST_F(DesktopStore, FilesAreForTheUserAloneAndKeepWhatTheUserMadeOfThem) {
    DesktopPersonalStore store = Store();
    ASSERT_TRUE(store.Create() && store.LogOn());
    EXPECT_TRUE(store.AddAppointment({}, "u1") && store.AddContact({}, "u1"));
    const Path contact = m_folder / "data/quillary/contacts/u1.vcf";
    EXPECT_EQ((std::vector{m_calendar / "u1.ics", contact}), store.Files());
    for (const auto& [path, mode] : {std::pair(m_calendar, 0700U), std::pair(m_calendar / "u1.ics", 0600U)}) {
        struct stat status {};
        ASSERT_EQ(0, stat(path.c_str(), &status));
        EXPECT_EQ(mode, status.st_mode & 0777) << path;
    }
    m_folder.Write("data/quillary/calendar/u1.ics", "edited");
    EXPECT_TRUE(store.AddAppointment({}, "u1"));
    EXPECT_EQ("edited", FileBytes(m_calendar / "u1.ics"));
    m_folder.Write("data/quillary/calendar/u1.ics", "");  // as a power cut may leave it
    EXPECT_TRUE(store.AddAppointment({}, "u1"));
    EXPECT_TRUE(FileBytes(m_calendar / "u1.ics").starts_with("BEGIN:VCALENDAR"));
}

TEST_F(DesktopStore, RefusesFoldersThatCannotHoldFiles) {
    std::filesystem::permissions(m_folder.Root(), std::filesystem::perms(0755));
    const auto refuses = [this](const Path& data) {
        const Environment place("XDG_DATA_HOME", data.c_str());
        return AsOrdinaryUser([this] {
            DesktopPersonalStore store = Store();
            return store.Create() && !store.LogOn();
        });
    };
    EXPECT_TRUE(refuses(m_folder / "data")) << "cannot be made";
    EXPECT_TRUE(refuses(m_folder.Write("file", ""))) << "is a file";
    std::filesystem::create_directories(m_calendar);
    std::filesystem::create_directories(m_folder / "data/quillary/contacts");
    EXPECT_TRUE(refuses(m_folder / "data")) << "can be read alone";
}

TEST_F(DesktopStore, LeavesNothingHalfWrittenAndReplacesNothing) {
    DesktopPersonalStore store = Store();
    ASSERT_TRUE(store.Create() && store.LogOn());
    std::filesystem::create_directory(m_calendar / "folder.ics");
    std::filesystem::create_symlink(m_folder / "elsewhere", m_calendar / "link.ics");
    EXPECT_FALSE(store.AddAppointment({}, "folder") || store.AddAppointment({}, "link"));
    for (const rlim_t room : {0, 100}) {
        const pid_t child = fork();
        if (child == 0) {  // a full disk, at the first bytes and later
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{room, room};
            setrlimit(RLIMIT_FSIZE, &limit);
            _exit(store.AddAppointment({}, "full") ? 1 : 0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status) << room;
    }
    const auto files = std::filesystem::directory_iterator(m_calendar);
    EXPECT_EQ(2, std::distance(begin(files), end(files)));
    EXPECT_TRUE(store.Files().empty());
}

}  // namespace
}  // namespace quillary
