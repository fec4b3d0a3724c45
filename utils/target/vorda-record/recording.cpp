// Whole and added snapshots.
#include "recording.h"

#include "changes.h"

#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/utsname.h>

int Recording::take(const DipPathCtx &ctx, Nanoseconds time)
{
    const SectionTexts &before = texts_[now_];
    SectionTexts &now = texts_[now_ = 1 - now_];
    const void *const new_settings = &ctx.intl_ctx; // padding that differs costs time, no more
    const void *const old_settings = &settings_;
    const bool same_settings =
        before.size() > 0 && memcmp(new_settings, old_settings, sizeof(settings_)) == 0;
    if (sections_.print(ctx, &now, same_settings ? &before : nullptr) != 0)
        return 1;
    if (!same_settings)
        settings_ = ctx.intl_ctx;

    const uint32_t frame = ctx.dip_ctx.frame_cnt;
    // A counter that goes back began anew, and so does the recording.
    const bool back = static_cast<int32_t>(frame - snapshot_.frame) < 0;
    const bool whole = back || time >= whole_due_ || must_be_whole(now, before);
    const uint32_t added_to = snapshot_.frame;

    body_.clear();
    body_.put("dev_idx = ", path_.dev, ", path_idx = ", path_.path, "\n");
    for (size_t i = 0; i < now.size(); i++)
        if (whole || before[i].empty())
            body_.put(now[i]);
        else if (now[i] != before[i])
            put_changes(body_, before[i], now[i]);
    body_.put(END_LINE);
    if (body_.failed()) {
        fputs("vorda-record: out of memory.\n", stderr);
        return 1;
    }
    snapshot_ = {.time = time, .frame = frame, .whole = whole, .added_to = added_to};

    if (whole) {
        whole_due_ = time + whole_every_;
        whole_wanted_ = false;
    }
    return 0;
}

// Nothing can say that a section has lost its text, but to leave it out of all.
bool Recording::must_be_whole(const SectionTexts &now, const SectionTexts &before) const
{
    bool lost = whole_wanted_;
    for (size_t i = 0; !lost && i < now.size(); i++)
        lost = now[i].empty() && !before[i].empty();
    return lost;
}

void put_labels(Text &text)
{
    utsname system = {};
    uname(&system);
    const time_t now = time(nullptr);
    tm utc = {};
    gmtime_r(&now, &utc);
    char started[40];
    strftime(started, sizeof(started), "%Y-%m-%dT%H:%M:%SZ", &utc);
    text.put("label host = ", static_cast<const char *>(system.nodename), "\n");
    text.put("label kernel = ", static_cast<const char *>(system.release), "\n");
    text.put("label started = ", static_cast<const char *>(started), "\n");
}

void put_head(Text &text, const Snapshot &snapshot, uint32_t missed)
{
    char time[32];
    snprintf(time, sizeof(time), "%lld.%06lld", static_cast<long long>(snapshot.time / SECOND),
             static_cast<long long>(snapshot.time % SECOND / 1000));
    text.put("time = ", static_cast<const char *>(time), "\nframe = ", snapshot.frame, "\n");
    if (missed > 0)
        text.put("missed = ", missed, "\n");
    if (!snapshot.whole)
        text.put("added_to = ", snapshot.added_to, "\n");
}

uint32_t sum_of(std::initializer_list<std::string_view> texts)
{
    const auto blank = [](char c) { return c <= ' ' && (c == ' ' || c == '\t' || c == '\r'); };
    uint32_t sum = 2166136261;
    const auto add = [&sum](char c) { sum = (sum ^ static_cast<uint8_t>(c)) * 16777619; };
    for (const std::string_view text : texts) {
        const char *const begin = text.data();
        const char *const end = begin + text.size();
        for (const char *p = begin; p != end;) {
            if (!blank(*p)) {
                add(*p++);
                continue;
            }
            const bool inside = p != begin && p[-1] != '\n';
            while (p != end && blank(*p))
                p++;
            if (inside && p != end && *p != '\n')
                add(' ');
        }
    }
    return sum;
}
