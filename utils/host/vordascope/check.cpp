// Whether captures are understood.
#include "verbs.h"

#include "shown.h"

#include <algorithm>
#include <map>

namespace vordascope
{

namespace
{

constexpr uint64_t SHOWN_LINES = 5; // of each reason

// The lines of one capture that are not understood.
class UnreadLines
{
public:
    UnreadLines(const std::string &name, bool all) : name_(name), all_(all) {}

    // Appends those of a snapshot, of each reason the first ones.
    void put(const Snapshot &snapshot, std::string &out)
    {
        for (const Unread &line : snapshot.unread) {
            count_++;
            if (++reasons_[line.why] > SHOWN_LINES && !all_)
                continue;
            out += name_ + ':' + std::to_string(line.line) + ": " + line.why + ": ";
            put_shown(line.text, out);
            out += '\n';
        }
    }

    // Appends how many more there are of each reason.
    void put_rest(std::string &out) const
    {
        for (const auto &[why, count] : reasons_)
            if (count > SHOWN_LINES && !all_)
                out += name_ + ": " + plural(count - SHOWN_LINES, "more line") + ": " + why +
                       " (--all shows them)\n";
    }

    uint64_t count() const { return count_; }

private:
    const std::string &name_;
    const bool all_;
    uint64_t count_ = 0;
    std::map<std::string, uint64_t> reasons_;
};

} // namespace

int check(const CheckOptions &options)
{
    Output output;
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file);
        UnreadLines unread(input.name(), options.all);
        uint64_t snapshots = 0;
        uint64_t fields = 0;
        std::string text;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            snapshots += snapshot.indexed;
            fields += snapshot.fields.size();
            text.clear();
            unread.put(snapshot, text);
            return output.write(text);
        });
        status = std::max({status, read, unread.count() > 0 ? NO : YES});
        text.clear();
        unread.put_rest(text);
        if (read == YES)
            text += input.name() + ": " + plural(snapshots, "snapshot") + ", " +
                    plural(fields, "field") + ", " +
                    (unread.count() == 0 ? "every line understood"
                                         : plural(unread.count(), "line") + " not understood") +
                    '\n';
        output.write(text);
        if (!output.writable())
            break;
    }
    return output.close() ? status : TROUBLE;
}

} // namespace vordascope
