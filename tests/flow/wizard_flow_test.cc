// The wizard over the whole console: it explains one alert to its end, whatever happens behind it.
#include "flow_fixture.h"
#include "home/frm_more_info.h"
#include "home/frm_quarantine.h"

namespace zendrix::flow {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class WizardFlow : public FlowTest {
 protected:
  WizardFlow() {
    HaveDescription(2, "Aggregation,N,<A href='do'><dotext></A> at <time>\r\n");
    HaveDescription(5,
                    "Aggregation,At &lt;full description from right pane&gt;\r\n"
                    "Running Processes,Program &lt;description&gt; at &lt;time of alert&gt;\r\n");
    HaveDescription(6, "yesmsg,Normal.\r\nnomsg,Not normal.\r\ndknowmsg,Who knows.\r\n");
    const auto main = world_.host.on_show;
    world_.host.on_show = [this, main](widgets::Form& form) {
      main(form);
      auto* const opened = dynamic_cast<home::frmMoreInfo*>(&form);
      if (opened) shown_ = std::make_unique<testing::FakePage>(opened->WBr);
    };
  }

  void OpenOnTool() {
    Write(Alert(0, "/opt/first") + Alert(10, "/opt/tool"));
    Start();
    Home().ViewItems_Click(home::kAlertsView);
    ClickRow("K5");
  }
  // Presses Analyze; `user` is what the user does in the wizard.
  void Analyze(std::function<void(home::frmMoreInfo&)> user) {
    world_.host.WhileOpen("frmMoreInfo", [this, user](widgets::Form& form) {
      auto& wizard = dynamic_cast<home::frmMoreInfo&>(form);
      user(wizard);
      // The page goes before its view.
      pages_ = shown_->events;
      shown_.reset();
    });
    Home().alerts.sMoreInfo.clicked.Raise();
  }
  static void Answer(home::frmMoreInfo& wizard, std::size_t answer) {
    wizard.optAns[answer].Click();
    wizard.bNext.clicked.Raise();
  }
  std::string Body() const { return shown_->events.back(); }
  std::optional<std::string> Decision(int second) { return console_->alerts().Decision(Tag(second)); }

  std::unique_ptr<testing::FakePage> shown_;
  std::vector<std::string> pages_;
};

TEST_F(WizardFlow, AllYesMarksTheAlertAsAllowedAndBuildsTheListAnew) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    EXPECT_THAT(Body(), HasSubstr("01:45:11 AM"));
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("Program /opt/tool at 01:45:11 AM"));
    Answer(wizard, 0);
    EXPECT_EQ(Body(), "body Normal.");
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(world_.host.shown.back(),
            (widgets::ScriptedFormHost::Shown{"frmMoreInfo", "frmNewUI", false, true, true}));
  EXPECT_EQ(Home().alerts.WizardResult, 0);
  EXPECT_EQ(Decision(11), Tag(11));
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion Allowed", "K2 Intrusion"));
  EXPECT_FALSE(world_.platform.files.Has(Path("KorvessaActivations.kvl"))) << "the mark is all there is";
  EXPECT_THAT(Taken(), ::testing::IsEmpty());
}

TEST_F(WizardFlow, NoMarksTheAlertAsBlocked) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    wizard.bNext.clicked.Raise();
    Answer(wizard, 1);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Home().alerts.WizardResult, 1);
  EXPECT_EQ(Decision(11), Tag(11) + "A");
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion Blocked", "K2 Intrusion"));
}

TEST_F(WizardFlow, CloseBoxMarksNothingAndBuildsTheListAllTheSame) {
  OpenOnTool();
  SayYes();
  Analyze([&](home::frmMoreInfo& wizard) {
    wizard.bNext.clicked.Raise();
    Answer(wizard, 1);
    wizard.Unload(widgets::UnloadCause::kCloseBox);
  });
  EXPECT_EQ(Home().alerts.WizardResult, -1);
  EXPECT_EQ(Decision(11), std::nullopt);
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion", "K2 Intrusion"));
  EXPECT_THAT(console_->alerts().context().NotableInfo, ::testing::SizeIs(2)) << "the first row is shown";
}

// The add meets a key that is there.
TEST_F(WizardFlow, SecondAllowLeavesTheMarkAsItIs) {
  OpenOnTool();
  for (int i = 0; i < 2; ++i) {
    Analyze([&](home::frmMoreInfo& wizard) {
      wizard.bNext.clicked.Raise();
      Answer(wizard, 0);
      wizard.bFinish.clicked.Raise();
    });
    EXPECT_EQ(Decision(11), Tag(11));
  }
}

TEST_F(WizardFlow, AllowBehindABlockAndBlockBehindAnAllowReplaceTheMark) {
  OpenOnTool();
  const auto conclude = [&](std::size_t answer) {
    Analyze([&](home::frmMoreInfo& wizard) {
      wizard.bNext.clicked.Raise();
      Answer(wizard, answer);
      wizard.bFinish.clicked.Raise();
    });
  };
  conclude(1);
  conclude(0);
  EXPECT_EQ(Decision(11), Tag(11));
  conclude(2);
  EXPECT_EQ(Decision(11), Tag(11) + "A");
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion Blocked", "K2 Intrusion"));
}

// What is looked up for a new row took the place of the events that the wizard was about to show.
TEST_F(WizardFlow, AlertThatArrivesUnderTheWizardLendsItNoEvent) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    Append(Alert(20, "/opt/new"));
    Tick();
    ASSERT_THAT(Rows(), ElementsAre("K8 Intrusion", "K5 Intrusion", "K2 Intrusion"));
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("Program /opt/tool at 01:45:11 AM"));
    wizard.bBack.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("01:45:11 AM"));
    wizard.bNext.clicked.Raise();
    Answer(wizard, 1);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_THAT(pages_, Not(Contains(HasSubstr("/opt/new"))));
  EXPECT_EQ(Decision(11), Tag(11) + "A");
  EXPECT_EQ(Decision(21), std::nullopt);
}

TEST_F(WizardFlow, RowSelectedBehindTheWizardIsNotTheOneThatIsMarked) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    ClickRow("K2");
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("/opt/tool"));
    Answer(wizard, 1);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Decision(11), Tag(11) + "A");
  EXPECT_EQ(Decision(1), std::nullopt);
}

TEST_F(WizardFlow, FileReplacedUnderTheWizardChangesNeitherPagesNorMark) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    Write(Line(40, "System", "s") + Line(41, "System", "s") + Alert(50, "/opt/other"));
    Tick();
    ASSERT_THAT(Rows(), ElementsAre("K4 Intrusion"));
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("Program /opt/tool at 01:45:11 AM"));
    Answer(wizard, 1);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Decision(11), Tag(11) + "A") << "the user's own decision is kept";
  EXPECT_THAT(Rows(), ElementsAre("K4 Intrusion"));
}

TEST_F(WizardFlow, TickDuringTheWaitForAPageDoesNoHarm) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    shown_->on_navigate = [&] {
      world_.platform.timers.Post([&] {
        Append(Alert(20, "/opt/new"));
        Tick();
        wizard.WBr.NavigationComplete.Raise();
      });
    };
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("Program /opt/tool at 01:45:11 AM"));
    shown_->on_navigate = [&] { wizard.WBr.NavigationComplete.Raise(); };
    Answer(wizard, 0);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Decision(11), Tag(11));
}

TEST_F(WizardFlow, PopUpUnderTheWizardOnlyCloses) {
  OpenOnTool();
  Analyze([&](home::frmMoreInfo& wizard) {
    EXPECT_FALSE(Home().enabled);
    Home().state = widgets::WindowState::kMinimised;
    Append(Alert(20, "/opt/new"));
    Tick();
    home::frmPopUpMsg* const pop_up = Home().pop_ups.pop_up();
    ASSERT_NE(pop_up, nullptr);
    EXPECT_TRUE(pop_up->enabled);
    pop_up->lblDetails.clicked.Raise();
    EXPECT_FALSE(pop_up->loaded());
    EXPECT_EQ(Home().state.Get(), widgets::WindowState::kMinimised);
    EXPECT_TRUE(wizard.loaded());
    Home().state = widgets::WindowState::kNormal;
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("/opt/tool"));
    Answer(wizard, 0);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Decision(11), Tag(11));
}

TEST_F(WizardFlow, AnalyzeAndQuarantineUnderTheWizardOpenNothing) {
  OpenOnTool();
  SayYes();
  Analyze([&](home::frmMoreInfo& wizard) {
    const auto before = world_.host.shown.size();
    Home().alerts.sMoreInfo.clicked.Raise();
    Home().alerts.sQuarantine.clicked.Raise();
    EXPECT_EQ(world_.host.shown.size(), before);
    wizard.Unload(widgets::UnloadCause::kCloseBox);
  });
}

TEST_F(WizardFlow, EndOfTheProgramUnderTheWizardEndsInOrder) {
  OpenOnTool();
  EXPECT_EQ(world_.EndOf([&] {
    Analyze([&](home::frmMoreInfo&) {
      shown_.reset();
      console_->End();
    });
  }),
            0);
  EXPECT_THAT(world_.quiet.Take(), Contains("'QueryUnload': Stop UI."));
}

TEST_F(WizardFlow, ListWithoutASelectedRowAnalyzesItsFirst) {
  OpenOnTool();
  Home().alerts.lvAlerts.Select(std::nullopt);
  Analyze([&](home::frmMoreInfo& wizard) {
    wizard.bNext.clicked.Raise();
    Answer(wizard, 0);
    wizard.bFinish.clicked.Raise();
  });
  EXPECT_EQ(Decision(11), Tag(11));
}

TEST_F(WizardFlow, EventThatSpellsMarkupIsShownAsText) {
  Write(Alert(0, "/opt/<script>x</script>"));
  Start();
  ClickRow("K2");
  SayYes();
  Analyze([&](home::frmMoreInfo& wizard) {
    wizard.bNext.clicked.Raise();
    EXPECT_THAT(Body(), HasSubstr("/opt/&lt;script&gt;"));
    EXPECT_THAT(Body(), Not(HasSubstr("<script>")));
    wizard.Unload(widgets::UnloadCause::kCloseBox);
  });
}

TEST_F(WizardFlow, QuarantineWindowOpensFromItsLink) {
  OpenOnTool();
  world_.platform.family.quarantine_entries = {{"a", "/opt/tool", 7, "cafe", kNow, 0, Tag(11)}};
  world_.host.WhileOpen("frmQuarantine", [&](widgets::Form& form) {
    auto& window = dynamic_cast<home::frmQuarantine&>(form);
    EXPECT_EQ(window.lvQuarantine.at(0).text, "/opt/tool");
    SayYes();
    window.qRestore.clicked.Raise();
    EXPECT_EQ(window.lvQuarantine.size(), 0U);
    window.qClose.clicked.Raise();
  });
  Home().alerts.sQuarantine.clicked.Raise();
  EXPECT_THAT(world_.platform.family.restore_calls, ElementsAre("a"));
  EXPECT_EQ(Home().alerts.sDesc.subject(), "5 " + Tag(11));
}

}  // namespace
}  // namespace zendrix::flow
