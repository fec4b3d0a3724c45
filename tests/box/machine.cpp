#include "machine.h"

#include "harness.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

class Machine
{
public:
    // `kind` is an argument of power-on, or nullptr.
    explicit Machine(const char *kind)
    {
        std::string folder = std::filesystem::temp_directory_path() / "vorda-box-XXXXXX";
        folder_ = mkdtemp(folder.data());

        int ends[2];
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends);
        std::string program = VORDA_SOURCE_DIR "/sim/box/run";
        char *argv[] = {program.data(), folder_.data(), const_cast<char *>(kind), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv, environ) != 0)
            perror(argv[0]);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        lines_ = fdopen(ends[0], "r+");
    }

    ~Machine()
    {
        fclose(lines_);
        waitpid(pid_, nullptr, 0);
        std::filesystem::remove_all(folder_);
    }

    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;

    Answer run(const std::string &line)
    {
        fprintf(lines_, "%s\n", line.c_str());
        fflush(lines_);
        char number[16];
        if (fgets(number, sizeof(number), lines_) == nullptr)
            exit(EXIT_FAILURE);
        const std::string answer = folder_ + "/" + std::to_string(std::stoi(number)) + "/";
        return {read_file(answer + "out"), read_file(answer + "err"), read_file(answer + "log"),
                read_file(answer + "driver"), std::stoi(read_file(answer + "status"))};
    }

private:
    std::string folder_;
    pid_t pid_ = -1;
    FILE *lines_ = nullptr;
};

} // namespace

std::ostream &operator<<(std::ostream &stream, const Answer &answer)
{
    const auto part = [&stream](const char *name, const std::string &text) {
        constexpr size_t ENOUGH = 2000;
        stream << "-- " << name << ", " << text.size() << " bytes\n" << text.substr(0, ENOUGH);
    };
    stream << "status " << answer.status << "\n";
    part("out", answer.out);
    part("err", answer.err);
    part("log", answer.log);
    part("driver", answer.driver);
    return stream;
}

Answer box(const std::string &line)
{
    static Machine machine(nullptr);
    return machine.run(line);
}

Answer one_core_box(const std::string &line)
{
    static Machine machine("one-core");
    return machine.run(line);
}
