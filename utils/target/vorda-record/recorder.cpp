// Recording a path, frame by frame.
#include "asked.h"
#include "frame_pace.h"
#include "output.h"
#include "record.h"
#include "recording.h"
#include "ring.h"
#include "sections.h"

#include "path_copy.h"
#include "sr_ctrl.h"
#include "vplat_types.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>

namespace
{

class Recorder
{
public:
    Recorder(const RecordCmd &cmd, const Sections &sections)
        : cmd_(cmd), sections_(sections), path_(input_path(cmd.dev_idx, cmd.path_idx)),
          recording_(sections, path_, whole_every(cmd)), ring_(cmd.ring, whole_every(cmd))
    {
    }

    // Records until something ends it; returns the status of record().
    int run();

private:
    // What comes next. Anything but the first two ends the recording.
    enum class Step { ON, ASKED, STOPPED, FAILED, UNSAVED, READER_GONE };

    static Nanoseconds whole_every(const RecordCmd &cmd);
    Step next();
    Step wait_for_frame();
    Step wait_for_tick();
    Step sleep_until(Nanoseconds time) const;
    VplatPathConf *find_path() const;
    Step copy();
    Step keep();
    Step pull_trigger();
    Step answer();
    Step write(const Snapshot &snapshot, std::string_view body);
    Step write_ring(const char *why);

    const RecordCmd &cmd_;
    const Sections &sections_;
    MPI_PATH path_;
    Recording recording_;
    Ring ring_;
    HeapText above_; // what stands before a snapshot: labels, the sum of what follows
    HeapText head_;
    FramePace pace_;
    Nanoseconds tick_ = 0;    // when the next snapshot is due, of those on the clock
    uint32_t taken_ = 0;      // snapshots
    bool written_ = false;    // one of them
    uint32_t last_frame_ = 0; // the frame of the last that was written
    bool triggered_ = false;
    Nanoseconds time_ = 0; // when the context was copied
    DipPathCtx ctx_ = {};
};

// In a ring, the time that it spans at most.
Nanoseconds Recorder::whole_every(const RecordCmd &cmd)
{
    return cmd.ring > 0 ? std::min(cmd.ring, cmd.whole) : cmd.whole;
}

int Recorder::run()
{
    if (cmd_.ring > 0)
        fprintf(stderr, "Keeping the last %d s, in at most %zu KiB. `kill -USR1 %d' writes them.\n",
                static_cast<int>(cmd_.ring / SECOND), ring_.limit() >> 10, getpid());

    Step step = copy(); // the first frame is there already
    tick_ = time_;
    for (;;) {
        if (step == Step::ON)
            step = keep();
        else if (step == Step::ASKED)
            step = answer();
        if (step != Step::ON && step != Step::ASKED)
            break;
        if (taken_ == cmd_.count && cmd_.count > 0)
            return RECORD_DONE;
        step = next();
    }

    if (step == Step::STOPPED)
        return -asked.stop;
    if (step == Step::READER_GONE)
        return -SIGPIPE;
    return step == Step::UNSAVED ? RECORD_UNSAVED : RECORD_FAILED;
}

// Waits for what is recorded next and copies it.
Recorder::Step Recorder::next()
{
    for (;;) {
        const uint32_t last = ctx_.dip_ctx.frame_cnt;
        Step step = cmd_.interval > 0 ? wait_for_tick() : wait_for_frame();
        if (step == Step::ON)
            step = copy();
        // The counter may have been seen before the camera took the lock for what it counts.
        if (step != Step::ON || cmd_.interval > 0 || ctx_.dip_ctx.frame_cnt != last)
            return step;
    }
}

Recorder::Step Recorder::wait_for_frame()
{
    const uint32_t last = ctx_.dip_ctx.frame_cnt;
    for (int looks = 1;; looks++) {
        const Step step = sleep_until(pace_.next_look(time_now()));
        if (step != Step::ON)
            return step;
        const VplatPathConf *path = find_path();
        if (path == nullptr)
            return Step::FAILED;
        const volatile uint32_t &frame = path->dip.dip_ctx.frame_cnt; // the camera counts meanwhile
        if (const uint32_t seen = frame; seen != last) {
            pace_.saw(time_now(), seen - last, looks > 1);
            return Step::ON;
        }
    }
}

// A tick that has passed meanwhile is not made up for.
Recorder::Step Recorder::wait_for_tick()
{
    while (tick_ <= time_now())
        tick_ += cmd_.interval;
    return sleep_until(tick_);
}

// For no longer than a moment at a time, to see whether the path is still there.
Recorder::Step Recorder::sleep_until(Nanoseconds time) const
{
    constexpr Nanoseconds MOMENT = SECOND / 5;
    for (;;) {
        if (asked.stop != 0)
            return Step::STOPPED;
        if (asked.now != 0)
            return Step::ASKED;
        if (find_path() == nullptr)
            return Step::FAILED;
        const Nanoseconds left = time - time_now();
        if (left <= 0)
            return Step::ON;
        const timespec rest = {.tv_sec = 0, .tv_nsec = static_cast<long>(std::min(left, MOMENT))};
        nanosleep(&rest, nullptr);
    }
}

// nullptr after a message.
VplatPathConf *Recorder::find_path() const
{
    void *path = SR_getShmAddr(&path_, SR_CTRL_DESCPTR_ITEM_INPUT_PATH);
    if (path == nullptr)
        fprintf(stderr, "Input path %d is not enabled on video device %d.\n", path_.path,
                path_.dev);
    return static_cast<VplatPathConf *>(path);
}

Recorder::Step Recorder::copy()
{
    for (PathWait wait;; wait.pause()) {
        VplatPathConf *path = find_path();
        if (path == nullptr)
            return Step::FAILED;
        const bool copied =
            path_copy({.lock = &path->lock, .from = &path->dip, .to = &ctx_, .size = sizeof(ctx_)});
        time_ = time_now();
        if (copied)
            return Step::ON;
        if (asked.stop != 0)
            return Step::STOPPED;
    }
}

// Makes a snapshot of what was copied, and writes it or puts it into the ring.
Recorder::Step Recorder::keep()
{
    if (cmd_.ring > 0 && ring_.wants_whole())
        recording_.begin_anew();
    if (recording_.take(ctx_, time_) != 0)
        return Step::FAILED;
    taken_++;
    if (cmd_.ring == 0)
        return write(recording_.snapshot(), recording_.body());
    if (!ring_.keep(recording_.snapshot(), recording_.body())) {
        fputs("vorda-record: out of memory.\n", stderr);
        return Step::FAILED;
    }
    return cmd_.trigger.key.empty() || triggered_ ? Step::ON : pull_trigger();
}

// Writes the ring if the condition holds for the first time.
Recorder::Step Recorder::pull_trigger()
{
    const Trigger &trigger = cmd_.trigger;
    const std::string_view number = sections_.number(recording_.texts(), trigger.key);
    if (number.empty()) {
        fprintf(stderr, "vorda-record: no number `%.*s' is recorded.\n",
                static_cast<int>(trigger.key.size()), trigger.key.data());
        return Step::FAILED;
    }
    const double value = strtod(number.data(), nullptr); // a line ends behind it
    triggered_ = trigger.relation == '<'   ? value < trigger.value
                 : trigger.relation == '>' ? value > trigger.value
                                           : value == trigger.value;
    return triggered_ ? write_ring("the trigger") : Step::ON;
}

// Does what SIGUSR1 asks for.
Recorder::Step Recorder::answer()
{
    asked.now = 0;
    if (cmd_.ring > 0)
        return write_ring("SIGUSR1");
    recording_.begin_anew();
    return Step::ON;
}

Recorder::Step Recorder::write(const Snapshot &snapshot, std::string_view body)
{
    const auto further = static_cast<int32_t>(snapshot.frame - last_frame_);
    const bool every = written_ && cmd_.interval == 0; // else nobody asked for those in between
    head_.clear();
    put_head(head_, snapshot, every && further > 1 ? static_cast<uint32_t>(further) - 1 : 0);
    std::string_view summed = body;
    summed.remove_suffix(END_LINE.size());
    above_.clear();
    if (!written_)
        put_labels(above_);
    above_.put("sum = ", sum_of({head_.written(), summed}), "\n");
    if (const int error = write_whole({above_.written(), head_.written(), body}); error != 0) {
        if (error == EPIPE)
            return Step::READER_GONE;
        fprintf(stderr, "vorda-record: cannot write: %s.\n",
                error == EINTR ? "the reader takes nothing" : strerror(error));
        return error == EINTR ? Step::STOPPED : Step::UNSAVED;
    }
    written_ = true;
    last_frame_ = snapshot.frame;
    return Step::ON;
}

Recorder::Step Recorder::write_ring(const char *why)
{
    int count = 0;
    const Nanoseconds from = ring_.oldest() != nullptr ? ring_.oldest()->snapshot.time : time_;
    for (; ring_.oldest() != nullptr; count++) {
        const Step step = write(ring_.oldest()->snapshot, ring_.oldest()->body());
        if (step != Step::ON)
            return step;
        ring_.drop_oldest();
        if (asked.stop != 0)
            return Step::STOPPED;
    }
    fprintf(stderr, "Wrote %d snapshot%s of %.1f s for %s.\n", count, count == 1 ? "" : "s",
            static_cast<double>(time_ - from) / static_cast<double>(SECOND), why);
    return Step::ON;
}

} // namespace

Nanoseconds time_now()
{
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * SECOND + now.tv_nsec;
}

int record(const RecordCmd &cmd)
{
    Sections sections;
    if (cmd.entries.empty() && sections.add("all") != 0)
        return RECORD_FAILED;
    for (const char *entry : cmd.entries)
        if (sections.add(entry) != 0)
            return RECORD_FAILED;

    if (SR_openShm() != 0) {
        fputs("Unable to initialize MPP.\n", stderr);
        return RECORD_FAILED;
    }
    Recorder recorder(cmd, sections); // large, so only here
    const int status = recorder.run();
    SR_closeShm();
    return status;
}
