// What chance decides, what was done, and the end when something is not as it must be.
#include "tests/soak/Soak.h"

#include <unistd.h>

#include <iostream>

namespace quillary::soak {

namespace {

constexpr std::size_t kLogged = 200;
constexpr int kSlowestWait = 15'000;

}  // namespace

QString Soak::Word() {
    static const QStringList kWords =
        QStringLiteral(
            u"Ann|bob|Zo\u00EB|stra\u00DFe|\u00C4rger|10%d|50%%|x\u00A0y|2003-05-17|5/17/03|07:45 pm|13:05||42|"
            "-7.5|a.b@c.org|(555) 123-4567|5551234|call 5551234|true|No Date|red|1e3|two\nlines")
            .split(u'|');
    return kWords[Pick(kWords.size())] + (Percent(30) ? QString::number(Pick(100)) : QString());
}

int Soak::Rarest(std::size_t count, const std::function<std::string(int)>& name) {
    std::vector<int> rarest;
    for (int k = 0; At(k) < count; ++k) {
        const int less = rarest.empty() ? -1 : m_covered[name(k)] - m_covered[name(rarest[0])];
        if (less < 0) rarest.clear();
        if (less <= 0) rarest.push_back(k);
    }
    return Percent(50) ? Pick(count) : Of(rarest);
}

void Soak::Log(const std::string& what) {
    m_log.push_back(std::to_string(m_step) + ' ' + what);
    if (m_options.isVerbose) std::cout << m_log.back() << std::endl;
    if (m_log.size() > kLogged) m_log.pop_front();
}

void Soak::Fail(const std::string& why) {
    for (const std::string& line : m_options.isVerbose ? decltype(m_log)() : m_log) std::cout << line << '\n';
    std::cout << "FAILED in action " << m_step << ": " << why << "\nThe files are in " << root.string()
              << "\nAgain: quillary-soak --seed " << m_options.seed << " --steps " << m_step << " --verbose"
              << std::endl;
    _exit(1);
}

void Soak::WaitFor(const std::function<bool()>& holds, const std::string& what) {
    Expect(QTest::qWaitFor(holds, kSlowestWait), what);
}

}  // namespace quillary::soak
