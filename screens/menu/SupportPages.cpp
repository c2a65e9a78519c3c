#include "screens/menu/SupportPages.h"

#include <fstream>

namespace Tolm {

std::vector<std::string> ReadSupportPages(const std::string& file)
{
    std::vector<std::string> pages;
    std::string page;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line[0] == '#') continue;
        if (!line.empty() && line[0] == '$') {
            pages.push_back(std::move(page));
            page.clear();
            continue;
        }
        page += line;
        page += '\n';
    }
    pages.push_back(std::move(page));
    return pages;
}

}  // namespace Tolm
