#include "host/sim/SimJson.h"

#include <new>
#include <regex>

namespace Tolm::HostSim {

std::string DescribeJsonError(const json::exception& e)
{
    // "[json.exception.type_error.302] (/a/0/b) type must be string, but is number"
    std::string text = e.what();
    if (text.rfind("[json.exception.", 0) == 0 && text.find("] ") != std::string::npos)
        text.erase(0, text.find("] ") + 2);
    std::string where;
    if (!text.empty() && text.front() == '(' && text.find(") ") != std::string::npos) {
        where = text.substr(1, text.find(") ") - 1);
        text.erase(0, text.find(") ") + 2);
    }
    static const std::regex mismatch("^type must be (\\w+), but is (\\w+)$");
    std::smatch m;
    if (std::regex_match(text, m, mismatch)) {
        std::string wanted = m[1];
        std::string article = wanted.find_first_of("aeiou") == 0 ? "an " : "a ";
        text = "expected " + article + wanted + ", found " + std::string(m[2]);
    }
    return "host state: " + (where.empty() ? std::string() : where + ": ") + text;
}

void RethrowAsHostFailure()
{
    try {
        throw;
    } catch (const HostCtl::Lib::HostCtlException&) {
        throw;
    } catch (const json::exception& e) {
        throw HostCtl::Lib::HostCtlException(DescribeJsonError(e));
    } catch (const std::bad_alloc&) {
        throw HostCtl::Lib::HostCtlException("host state: out of memory");
    } catch (const std::exception& e) {
        throw HostCtl::Lib::HostCtlException(std::string("host state: ") + e.what());
    } catch (...) {
        throw HostCtl::Lib::HostCtlException("host state: unknown failure");
    }
}

}  // namespace Tolm::HostSim
