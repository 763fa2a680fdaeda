#include "platform/posix/PosixLocale.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

constexpr DateOrder kMdy = DateOrder::MonthDayYear;
constexpr DateOrder kDmy = DateOrder::DayMonthYear;
constexpr DateOrder kYmd = DateOrder::YearMonthDay;

TEST(PosixLocale, OrderOfTheFormatsThatLocalesHave) {
    const std::tuple<const char*, const char*, DateOrder> kCases[] = {
        {"de_DE", "%d.%m.%Y", kDmy},
        {"sv_SE", "%Y-%m-%d", kYmd},
        {"ja_JP", "%Y年%m月%d日", kYmd},
        {"fi_FI, without padding", "%-d.%-m.%Y", kDmy},
        {"fa_IR, with its own digits", "%Oy/%Om/%Od", kYmd},
        {"th_TH, in its own era", "%d/%m/%Ey", kDmy},
        {"my_MM, weekday first", "%OC%Oy %b %Od %A", kYmd},
        {"lv_LV, a letter behind the number", "%Y.%m.%d.", kYmd},
        {"short for the year first", "%F", kYmd},
        {"a percent sign is none", "%%d %m/%d/%Y", kMdy},
        {"no date in it", "%H:%M", kMdy},
        {"cut off", "%d.%m.%", kMdy},
    };
    for (const auto& [name, format, order] : kCases) EXPECT_EQ(OrderOfDateFormat(format), order) << name;
}

TEST(PosixLocale, IsThatOfTheLocaleIfItIsThere) {
    const TestFolder folder;
    const Path source = folder.Write("source", "LC_TIME\ncopy \"sv_SE\"\nEND LC_TIME\n");
    const std::string localedef = "localedef -c -f UTF-8 -i " + source.string() + ' ';
    (void)system((localedef + (folder / "yearfirst").string() + " >/dev/null 2>&1").c_str());
    ASSERT_TRUE(std::filesystem::exists(folder / "yearfirst/LC_TIME")) << "needs localedef and the package locales";
    const Environment path("LOCPATH", folder.Root().c_str());
    const Environment all("LC_ALL", nullptr), lang("LANG", nullptr);
    for (const auto& [name, order] :
         {std::pair<const char*, DateOrder>{nullptr, kMdy}, {"yearfirst", kYmd}, {"not installed", kMdy}}) {
        const Environment time("LC_TIME", name);
        // In a process of its own, as the C library loses a copy of LOCPATH at each call.
        const pid_t child = fork();
        if (child == 0) _exit(static_cast<int>(PosixLocale().Order()));
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, W_EXITCODE(static_cast<int>(order), 0)) << (name ? name : "none");
    }
}

}  // namespace
}  // namespace quillary
