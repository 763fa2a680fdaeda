// Other programs as a desktop of the test's own names them: desktop entries in a folder, a mail portal on a bus.
#include "platform/DesktopLauncher.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QTest>

#include "platform/SendingPrograms.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

using Command = std::vector<std::string>;
using Program = Launcher::Program;

constexpr char kPortal[] = "/org/freedesktop/portal/desktop";

class LauncherTest : public ::testing::Test {
  protected:
    /// Ends with these lines of a shell's script.
    void AddProgram(const std::string& name, const std::string& end = {}) const {
        const Path path = m_folder.Write(("bin/" + name).c_str(),
                                         "#!/bin/sh\n{ for a; do printf '[%s]' \"$a\"; done; } >\"$0.part\"\n"
                                         "/bin/mv \"$0.part\" \"$0.got\"\n" +
                                             end);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    void AddEntry(const std::string& name, const std::string& exec, const std::string& more = {}) const {
        m_folder.Write(("data/applications/" + name).c_str(),
                       "[Desktop Entry]\nType=Application\nName=A Name\nExec=" + exec + "\n" + more);
    }
    /// The program's arguments, each in brackets, once it has run.
    [[nodiscard]] std::string Got(const std::string& name) const {
        const Path file = m_folder / ("bin/" + name + ".got").c_str();
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(file); })) << name;
        std::string got = FileBytes(file);
        std::filesystem::remove(file);
        return got;
    }

    TestFolder m_folder;
    Environment m_data{"XDG_DATA_HOME", (m_folder / "data").c_str()};
    Environment m_allData{"XDG_DATA_DIRS", (m_folder / "system").c_str()};
    Environment m_config{"XDG_CONFIG_HOME", (m_folder / "config").c_str()};
    Environment m_allConfig{"XDG_CONFIG_DIRS", (m_folder / "none").c_str()};
    Environment m_path{"PATH", (m_folder / "bin").c_str()};
    DesktopLauncher m_launcher{m_folder / "adapters"};
};

TEST_F(LauncherTest, FindsTheProgramThatTheDesktopNames) {
    AddProgram("there");
    for (const char* name : {"there.desktop", "vendor/below.desktop"}) AddEntry(name, "there %u");
    AddEntry("gone.desktop", "gone %u");
    AddEntry("unready.desktop", "there %u", "TryExec=gone\n");
    AddEntry("hidden.desktop", "there %u", "Hidden=true\n");
    AddEntry("inside.desktop", "there -x \"there %u\"");
    AddEntry("shell.desktop", "there -c %u");
    AddEntry("option.desktop", "there --to=%u");
    const struct {
        const char *group, *entries, *cache;
        Program program;
    } kRows[] = {
        {"Default Applications", "", "", Program::None},
        {"Default Applications", "unknown.desktop;there.desktop;", "", Program::There},
        {"Default Applications", "vendor-below.desktop", "", Program::There},
        {"Default Applications", "gone.desktop", "", Program::Missing},
        {"Default Applications", "unready.desktop", "", Program::Missing},
        {"Default Applications", "gone.desktop", "there.desktop;", Program::There},
        {"Default Applications", "hidden.desktop", "", Program::None},
        {"Default Applications", "inside.desktop", "", Program::None},  // what it starts would take the link apart
        {"Default Applications", "shell.desktop", "", Program::None},
        {"Default Applications", "option.desktop", "", Program::There},
        {"Default Applications", "../applications/there.desktop", "", Program::None},
        {"Added Associations", "there.desktop", "", Program::There},
        {"Removed Associations", "there.desktop", "there.desktop;", Program::None},
    };
    const std::string key = "]\nx-scheme-handler/tel=";
    for (const auto& row : kRows) {
        m_folder.Write("config/mimeapps.list", '[' + std::string(row.group) + key + row.entries + '\n');
        m_folder.Write("data/applications/mimeinfo.cache", "[MIME Cache" + key + row.cache + '\n');
        EXPECT_EQ(m_launcher.ProgramFor("tel"), row.program) << row.group << row.entries << row.cache;
    }
}

TEST_F(LauncherTest, AProgramGetsTheLinkAsOneArgumentAndItsFailureIsTold) {
    AddProgram("handler");
    m_folder.Write("config/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=h.desktop\n");
    const std::string link = "mailto:Ada \"L\" 'x'; $(id) `id` <a@b.org> --x %u\\";
    const std::string rows[][2] = {
        {"handler", '[' + link + ']'},
        {"handler --compose \"two words\" %U", "[--compose][two words][" + link + ']'},
        {"handler --to=%u %i%c %% -- %F", "[--to=" + link + "][A Name][%][--]"},
    };
    for (const auto& [exec, got] : rows) {
        AddEntry("h.desktop", exec);
        m_launcher.StartProgramFor(link, [](int status) { ADD_FAILURE() << status; });
        EXPECT_EQ(Got("handler"), got) << exec;
    }
    AddProgram("failing", "exit 3\n");
    AddProgram("killed", "kill -TERM $$\n");
    AddProgram("broken");
    m_folder.Write("bin/broken", "\x7F garbage");
    for (const auto& [exec, status] : {std::pair{"failing", 3}, {"killed", 143}, {"broken", 127}}) {
        AddEntry("h.desktop", exec);
        int told = 0;
        m_launcher.StartProgramFor(link, [&](int exitStatus) { told = exitStatus; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return told != 0; })) << exec;
        EXPECT_EQ(told, status) << exec;
    }
}

TEST_F(LauncherTest, AProgramGetsTheFileToSendByItsOwnOption) {
    const Path file = "/home/ann/My 'Lists',1%.pdb";
    const std::string link = "file:///home/ann/My%20%27Lists%27%2C1%25.pdb";
    EXPECT_EQ(MailCommand("/bin/evolution", file), (Command{"/bin/evolution", "mailto:?attach=" + link}));
    EXPECT_EQ(MailCommand("thunderbird", file), (Command{"thunderbird", "-compose", "attachment='" + link + "'"}));
    EXPECT_EQ(MailCommand("firefox", file), Command());

    using Bluetooth = Launcher::Bluetooth;
    EXPECT_EQ(m_launcher.BluetoothState(), Bluetooth::NoAdapter);
    m_folder.Write("adapters/hci0", "");
    EXPECT_EQ(m_launcher.BluetoothState(), Bluetooth::NoProgram);
    AddProgram("bluedevil-sendfile");
    EXPECT_EQ(m_launcher.BluetoothState(), Bluetooth::There);
    m_launcher.SendByBluetooth(file, [](int status) { ADD_FAILURE() << status; });
    EXPECT_EQ(Got("bluedevil-sendfile"), "[-f][" + file.native() + ']');
}

/// Reads the attachment through its descriptor, then answers.
class MailPortalObject : public QDBusVirtualObject {
  public:
    unsigned response = 0;
    std::string attached;

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        QVariantMap options;
        message.arguments().value(1).value<QDBusArgument>() >> options;
        QList<QDBusUnixFileDescriptor> files;
        options.value("attachment_fds").value<QDBusArgument>() >> files;
        attached = files.size() == 1 ? FileBytes("/proc/self/fd/" + std::to_string(files[0].fileDescriptor())) : "none";
        const QString path = QString(kPortal) + "/request/" + message.service().mid(1).replace('.', '_') + '/' +
                             options.value("handle_token").toString();
        QDBusMessage answer = QDBusMessage::createSignal(path, "org.freedesktop.portal.Request", "Response");
        answer << response << QVariantMap();
        return message.member() == QLatin1String("ComposeEmail") &&
               bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path)))) && bus.send(answer);
    }
};

TEST_F(LauncherTest, APortalGetsTheFileElseAMailProgramElseItFails) {
    const Path file = m_folder.Write("My List.pdb", "the bytes");
    const std::string byProgram = "[--attach][" + file.native() + ']';
    int failures = 0;
    const auto send = [&] { m_launcher.SendByMail(file, nullptr, [&] { ++failures; }); };
    AddProgram("claws-mail");
    send();
    EXPECT_EQ(Got("claws-mail"), byProgram) << "no portal";

    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
    ASSERT_TRUE(bus.isConnected()) << "run it in dbus-run-session";
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    MailPortalObject portal;
    ASSERT_TRUE(bus.registerVirtualObject(kPortal, &portal, QDBusConnection::SubPath));
    ASSERT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
    for (const unsigned taken : {0U, 1U}) {  // 1: the user gives up in the portal's own window
        portal.response = taken;
        portal.attached.clear();
        send();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !portal.attached.empty(); }));
        EXPECT_EQ(portal.attached, "the bytes");
        AddProgram("claws-mail");
        portal.response = 2;
        send();
        EXPECT_EQ(Got("claws-mail"), byProgram) << "the portal could not";
        EXPECT_FALSE(std::filesystem::exists(m_folder / "bin/claws-mail.got")) << "by both";
        EXPECT_EQ(failures, 0);
    }
    AddProgram("claws-mail", "exit 1\n");
    for (const int failed : {1, 2}) {
        send();
        EXPECT_TRUE(QTest::qWaitFor([&] { return failures == failed; }))
            << "the first program fails, then there is none";
        std::filesystem::remove(m_folder / "bin/claws-mail");
    }
    QDBusConnection::disconnectFromBus("portal");
}

}  // namespace
}  // namespace quillary

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
