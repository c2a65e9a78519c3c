// Running the root's programs.
#include "HostRoot.h"

#include "host/TarnCtl.h"

#include <fcntl.h>
#include <unistd.h>

namespace Tolm::Test {
namespace {

// A command line's program is the root's; its arguments reach it as written
// (the root's tools resolve the paths they are given), and nothing it prints
// reaches the console's terminal.
TEST(Exec, RunsTheRootsProgramWithItsArgumentsAsGivenAndNoOutput)
{
    HostRoot root;
    std::filesystem::create_directories(root.Root() + "/sbin");
    const std::string tool = root.Root() + "/sbin/tool";
    std::ofstream(tool) << "#!/bin/sh\necho \"$@\" > \"$(dirname \"$0\")/args\"\necho to-stdout\necho to-stderr >&2\n";
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);

    // Whatever the program writes to the console's descriptors lands here.
    const std::string captured = root.Root() + "/terminal";
    int saved[2] = {::dup(1), ::dup(2)};
    int file = ::open(captured.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(file, 1);
    ::dup2(file, 2);
    int status = TarnCtl::Util::TarnCtl_Exec("/sbin/tool -d /var/log/");
    ::dup2(saved[0], 1);
    ::dup2(saved[1], 2);
    for (int fd : {file, saved[0], saved[1]})
        ::close(fd);

    EXPECT_EQ(0, status);
    EXPECT_EQ("-d /var/log/\n", root.File("/sbin/args"));
    EXPECT_EQ("", root.File("/terminal"));

    // The script a shell is handed is the root's too.
    std::filesystem::create_directories(root.Root() + "/bin");
    std::filesystem::create_symlink("/bin/sh", root.Root() + "/bin/sh");
    EXPECT_EQ(0, TarnCtl::Util::TarnCtl_Exec("/bin/sh /sbin/tool stop /var/log/"));
    EXPECT_EQ("stop /var/log/\n", root.File("/sbin/args"));
}

}  // namespace
}  // namespace Tolm::Test
