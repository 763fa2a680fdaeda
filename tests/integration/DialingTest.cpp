// Dialing with a phone library of the test's own.
#include "integration/Dialing.h"

#include <gtest/gtest.h>

#include "db/Questions.h"

namespace quillary {
namespace {

using State = PhoneLibrary::State;
using Texts = std::vector<std::string>;

class Stage : public PhoneLibrary, public Questions {
  public:
    State state = State::There;
    int returnCode = 0;
    Texts calls, told;

    State Find() override { return state; }
    void MakeCall(const std::string& link, Refused refused) override {
        calls.push_back(link);
        if (returnCode != 0) refused(returnCode);
    }
    void Tell(const Failure& failure) override { told.push_back(failure.text); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

TEST(Dialing, IsTestedOnceAndACallLooksAgain) {
    const struct {
        State state;
        Texts told;
    } kRows[] = {
        {State::There, {}},
        {State::Missing, {"Device does not support automated dialing."}},
        {State::Modified, {"Phone DLL has been modified on this device."}},
    };
    for (const auto& row : kRows) {
        const bool isThere = row.told.empty();
        Stage stage;
        Dialing dialing(stage, stage);
        stage.state = row.state;
        EXPECT_EQ(dialing.CanDial(false), isThere);
        EXPECT_EQ(stage.told, Texts());
        EXPECT_EQ(MessageText(dialing.WhyNot()), isThere ? "" : row.told[0]);
        stage.state = isThere ? State::Missing : State::There;
        EXPECT_EQ(dialing.CanDial(true), isThere) << "what is installed later changes nothing";
        stage.state = row.state;
        dialing.DialNumber("555-1234");
        EXPECT_EQ(stage.told, row.told);
        EXPECT_EQ(stage.calls, isThere ? Texts{"tel:555-1234"} : Texts());
    }
    Stage stage;
    stage.returnCode = 4;
    Dialing(stage, stage).DialNumber("");
    EXPECT_EQ(stage.calls, Texts{"tel:"});
    EXPECT_EQ(stage.told, Texts{"Call Failed! Return Code: 4"});
}

}  // namespace
}  // namespace quillary
