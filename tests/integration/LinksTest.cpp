// What another program gets of a text that anyone may have written.
#include "integration/Links.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

constexpr Message kControl = Message::ControlInLink;
constexpr Message kNoWeb = Message::NotAWebAddress;
constexpr Message kMore = Message::MailDoesMore;

struct Row {
    const char* typed;
    const char* link;  // null: refused
    Message why = Message::None;
};

template <class Link>
void Check(std::initializer_list<Row> rows, Link link) {
    for (const Row& row : rows) {
        Failure failure;
        EXPECT_EQ(link(row.typed, failure).value_or("refused"), row.link ? row.link : "refused") << row.typed;
        EXPECT_EQ(failure.message, row.why) << row.typed;
    }
}

TEST(Links, Web) {
    Check({{"https://example.org/a?b=c&d=1;2#e", "https://example.org/a?b=c&d=1;2#e"},
           {"HTTP://Example.org", "http://Example.org"},
           {"  example.org  ", "http://example.org"},
           {"example.org:8080/x", "http://example.org:8080/x"},
           {"localhost:80", "http://localhost:80"},
           {"[::1]:80", "http://[::1]:80"},
           {"m\xC3\xBCnchen.de/\xC3\xA4", "http://m\xC3\xBCnchen.de/\xC3\xA4"},
           {"a.org/a b\"c' --d`id`\\", "http://a.org/a%20b%22c%27%20--d%60id%60%5C"},
           {"mailto:ada@example.org", "mailto:ada@example.org"},
           {"   ", nullptr},
           {"javascript:alert(1)", nullptr, kNoWeb},
           {"file:///etc/passwd", nullptr, kNoWeb},
           {"/etc/passwd", nullptr, kNoWeb},
           {"http:///etc/passwd", nullptr, kNoWeb},
           {"https://-x", nullptr, kNoWeb},
           {"--option", nullptr, kNoWeb},
           {"\"a.org\"", nullptr, kNoWeb},
           {"$(id)", nullptr, kNoWeb},
           {"a.org\n--x", nullptr, kControl},
           {"a.org/\x7F", nullptr, kControl},
           {"a.org/\xC2\x85", nullptr, kControl},
           {"a.org/\xE2\x80\xA8", nullptr, kControl},
           {"mailto:a@b.org?attach=/etc/passwd", nullptr, kMore}},
          WebLink);
}

TEST(Links, Mail) {
    Check({{"Ada \"L\" <ada@example.org>; b", "mailto:Ada \"L\" <ada@example.org>; b"},
           {"-option", "mailto:-option"},
           {"a%41b@example.org", "mailto:a%41b@example.org"},
           {"MailTo:ada@example.org", "mailto:ada@example.org"},
           {"a@b.org?Subject=Hi%20you&body=x%0Dy&cc=c@d.org", "mailto:a@b.org?Subject=Hi%20you&body=x%0Dy&cc=c@d.org"},
           {" ", nullptr},
           {"a@b.org?attach=/etc/passwd", nullptr, kMore},
           {"a@b.org?subject=x&ATTACHMENT=/etc/passwd", nullptr, kMore},
           {"a@b.org?bcc=c@d.org", nullptr, kMore},
           {"a@b.org?subject=x&amp;attach=/etc/passwd", nullptr, kMore},
           {"a@b.org?%61ttach=/etc/passwd", nullptr, kMore},
           {"a@b.org?subject=x%0aBcc:c@d.org", nullptr, kMore},
           {"a@b.org?subject=x%1b", nullptr, kMore},
           {"a@b.org%0D%0ABcc:c@d.org", nullptr, kMore},
           {"a@b.org\r\nBcc: c@d.org", nullptr, kControl}},
          MailLink);
}

TEST(Links, Phone) {
    Check({{"(555) 123-4567", "tel:(555)123-4567"},
           {"", "tel:"},
           {"-option", "tel:-option"},
           {"*21#?x;y", "tel:*21%23%3Fx%3By"},
           {"555\r\n\"1\"\xC3\xA4", "tel:555%221%22%C3%A4"}},
          [](const char* typed, Failure&) { return std::optional(PhoneLink(typed)); });
}

}  // namespace
}  // namespace quillary
