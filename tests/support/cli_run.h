// Runs meshwright-cli in-process and keeps what it printed.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "cli/cli.h"

namespace mw::test {

struct CliRun {
    int status;
    std::string out;
    std::string err;
};

inline CliRun Cli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int status = RunCli(args, out, err);
    return {status, out.str(), err.str()};
}

}  // namespace mw::test
