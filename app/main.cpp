#include <memory>

#include "app/Startup.h"
#include "screens/status/WelcomeWindow.h"

int main(int argc, char** argv)
{
    return Tolm::RunConsole(argc, argv, [] { return std::make_unique<Tolm::WelcomeWindow>(nullptr); });
}
