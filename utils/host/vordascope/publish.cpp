// Metrics of captures, in a file that others read while it is renewed.
#include "verbs.h"

#include "metrics.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace vordascope
{

namespace
{

// Writes the metrics where nobody reads them yet, and lets them take the place of those before.
// Returns whether that could be done; if not, a message has been printed.
bool renew(const Metrics &metrics, const std::string &file)
{
    std::string text;
    metrics.put(text);
    if (file.empty()) {
        Output output;
        output.write(text);
        return output.close();
    }
    const std::string beside = file + '.' + std::to_string(getpid());
    Output output(beside);
    output.write(text);
    if (!output.close()) {
        unlink(beside.c_str());
        return false;
    }
    if (rename(beside.c_str(), file.c_str()) == 0)
        return true;
    complain(file + ": " + strerror(errno));
    unlink(beside.c_str());
    return false;
}

} // namespace

int metrics(const MetricsOptions &options)
{
    Metrics all(options.only, options.most);
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file, read_labels(options.labels));
        uint64_t unread = 0;
        bool written = true;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            unread += snapshot.unread.size();
            if (!snapshot.indexed)
                return true;
            all.add(snapshot, options.files.size() > 1 ? input.file() : "", input.written());
            // What comes through a pipe is there to be followed.
            written = options.out.empty() || !input.live() || renew(all, options.out);
            return written;
        });
        if (!written)
            return TROUBLE;
        status = std::max(status, read);
        if (read == YES)
            warn_of_unread(input, unread);
    }
    if (all.left_out() > 0)
        complain(plural(all.left_out(), "field") + " of a path left out beyond the first " +
                 std::to_string(options.most) + "; choose with --only, or take more with --max");
    return renew(all, options.out) ? status : TROUBLE;
}

} // namespace vordascope
