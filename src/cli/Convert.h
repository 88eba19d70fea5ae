#pragma once
// tarvik-cli convert: a world or any file a reader takes, in; a world or any
// export, out. The dialogs the reader and the export open are answered from the
// options, so one command does what a person does at the window.

#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

// args are what follows "convert". Exit status 0 when the output was written, 2
// for a usage error, 1 when reading or writing failed.
int runConvert(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cli
