#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QtCore/QCoreApplication>

#include <cstdio>
#include <cstdlib>

#ifdef DUSKFERN_TEST_WINDOW
#include "Shell/DuskfernApp.h"

#include <QtGui/QGuiApplication>
using Application = QGuiApplication;

namespace {

QtMessageHandler defaultHandler = nullptr;

/// A screen that complains has a part that does not work, whatever else is seen of it.
void failOnComplaints(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    defaultHandler(type, context, text);
    if (text.contains(QLatin1String(".qml"))) {
        ADD_FAILURE() << qPrintable(text);
    }
}

}  // namespace
#else
using Application = QCoreApplication;
#endif

/// Ends the program when a suite cannot be set up: Googletest would mark its tests as skipped, and so would CTest.
class SuitesMustBeSetUp final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override { m_isInTest = true; }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { m_isInTest = false; }
    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed() && !m_isInTest) {
            std::fflush(stdout);
            std::_Exit(EXIT_FAILURE);
        }
    }

    bool m_isInTest = false;
};

/// Runs the tests in a Spanish session whose home is a temporary one: GLib and Qt read where it is once, at the start,
/// and no test may touch the real one.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new SuitesMustBeSetUp);  // NOLINT(*-owning-memory): taken over
    const TemporaryFolder home;
    setenv("HOME", home.path().c_str(), 1);
    for (const auto& [variable, folder] : {std::pair("XDG_DATA_HOME", ".local/share"),
                                           {"XDG_STATE_HOME", ".local/state"},
                                           {"XDG_CACHE_HOME", ".cache"},
                                           {"XDG_CONFIG_HOME", ".config"},
                                           {"TMPDIR", "tmp"}}) {
        home.folder(folder);
        setenv(variable, home.path(folder).c_str(), 1);
    }
    setenv("GIO_USE_VFS", "local", 1);
    setenv("LC_ALL", "es_ES.UTF-8", 1);
    const Application application(argc, argv);
#ifdef DUSKFERN_TEST_WINDOW
    DuskfernApp::prepareProcess();
    defaultHandler = qInstallMessageHandler(failOnComplaints);
#endif
    return RUN_ALL_TESTS();
}
