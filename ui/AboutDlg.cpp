#include "ui/AboutDlg.h"

#include "ui/HelpTopics.h"

namespace quillary {

namespace {

constexpr int kLicence = 1001;
constexpr ControlInfo kControls[] = {
    {0, ControlKind::Text,
     u"Quillary keeps small tables (contacts, collections, logs), each in one file that you can copy "
     u"anywhere."},
    {0, ControlKind::Text, u"Version " QUILLARY_VERSION},
    {kLicence, ControlKind::Hyperlink, u"Free software under the MIT licence"},
};
constexpr DialogInfo kDialog{100, u"About Quillary", kControls, kTopicAbout, Buttons::Ok};

}  // namespace

CAboutDlg::CAboutDlg(FrameWindow& frame) : CQuillaryDialog(kDialog, frame) {}

}  // namespace quillary
