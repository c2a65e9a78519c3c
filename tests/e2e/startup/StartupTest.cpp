// The console's process life: start-up side effects, the VT argument, the
// host backend, and the ways out through signals and the resize key.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

TEST(Startup, ClaimsThePidFileIgnoresABadVtAndEndsOnTerminatingSignals)
{
    const std::pair<int, const char*> runs[] = {{SIGTERM, "64"}, {SIGINT, "abc"}, {SIGQUIT, nullptr}};
    for (auto [sig, vt] : runs) {
        SCOPED_TRACE(sig);
        Console tolm;
        tolm.Start(vt ? std::vector<std::string>{vt} : std::vector<std::string>{});
        ASSERT_TRUE(Started(tolm));  // the pid file names the console
        EXPECT_TRUE(!vt || tolm.Syslog().find(std::string("Invalid VT specified for Tolm: ") + vt) != std::string::npos);
        tolm.Signal(sig);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    }
}

TEST(Startup, ResizeAndTheSerialResizeSequenceLogTheSizeAndEnd)
{
    for (bool serial : {false, true}) {
        Console tolm;
        tolm.Start();
        ASSERT_TRUE(Started(tolm));
        serial ? tolm.SendBytes("\x1bR") : tolm.Resize(100, 30);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
        EXPECT_NE(tolm.Syslog().find(serial ? "Resized window to 80x25" : "Resized window to 100x30"),
                  std::string::npos);
    }
}

// A backend choice that cannot run is a logged error and a plain exit; an
// explicit choice leaves the VT argument where it was.
TEST(Startup, HostBackendChoice)
{
    struct Case {
        std::map<std::string, std::string> env;
        std::vector<std::string> args;
        const char* logLine;
    };
    const Case refused[] = {
        {{{"TOLM_BACKEND", "real"}}, {}, "Host backend 'real' is not available in this build"},
        {{}, {"--backend", "mainframe"}, "Unknown host backend 'mainframe'"},
        {{}, {}, "No host backend: "},  // no state file
    };
    for (const Case& c : refused) {
        SCOPED_TRACE(c.logLine);
        ConsoleOptions options;
        options.env = c.env;
        Console tolm(options);
        if (c.env.empty() && c.args.empty()) std::filesystem::remove(tolm.RootPath("var/lib/hostsim/host.json"));
        tolm.Start(c.args);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(1));
        EXPECT_NE(tolm.Syslog().find(c.logLine), std::string::npos) << tolm.Syslog();
    }

    ConsoleOptions options;
    options.env = {{"TOLM_BACKEND", "real"}};  // the option wins
    Console tolm(options);
    tolm.Start({"--backend=sim", "abc"});
    ASSERT_TRUE(Started(tolm));
    EXPECT_NE(tolm.Syslog().find("Invalid VT specified for Tolm: abc"), std::string::npos);
}

}  // namespace
}  // namespace Tolm::E2E
