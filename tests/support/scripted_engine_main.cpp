// The program behind ScriptedEngine. It knows neither Qt nor the display; "KELO_SCRIPT" names its
// script, and what it notes goes into files beside that.

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

namespace {

constexpr unsigned longestLife = 60; // seconds; nothing survives a test that died

class Player {
public:
    explicit Player(std::string script)
        : script_(std::move(script))
    {
        note("runs", std::ios::app) << '.';
        note("cwd") << std::filesystem::current_path().string();
        note("pid") << ::getpid();
        std::ofstream environment = note("environment");
        for (char **entry = environ; *entry; ++entry)
            environment << *entry << '\n';
    }

    void play()
    {
        std::ifstream steps(script_);
        for (std::string step; std::getline(steps, step);) {
            const std::size_t space = step.find(' ');
            const std::string rest = space == std::string::npos ? "" : step.substr(space + 1);
            perform(step.substr(0, space), rest);
        }
        serve();
    }

private:
    [[nodiscard]] std::ofstream note(const char *kind, std::ios::openmode mode = {}) const
    {
        return std::ofstream(script_ + '.' + kind, std::ios::out | mode);
    }

    void perform(const std::string &verb, const std::string &rest)
    {
        if (verb == "line")
            std::cout << rest << std::endl;
        else if (verb == "raw")
            std::cout << unescaped(rest) << std::flush;
        else if (verb == "burst")
            burst(rest);
        else if (verb == "bytes")
            std::cout << std::string(std::stoul(rest), 'x') << std::flush;
        else if (verb == "stderr")
            std::cerr << std::string(std::stoul(rest), 'x') << std::flush;
        else if (verb == "sleep")
            std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(rest)));
        else if (verb == "wait")
            await(rest);
        else if (verb == "stubborn")
            stubborn_ = std::signal(SIGTERM, SIG_IGN) != SIG_ERR;
        else if (verb == "deaf")
            ::close(STDIN_FILENO);
        else if (verb == "crash")
            std::raise(SIGKILL);
        else if (verb == "exit")
            std::_Exit(std::stoi(rest));
        else if (verb == "serve")
            serve();
        else if (!verb.empty())
            std::_Exit(99); // a misspelt script must not look like a quiet engine
    }

    static void burst(const std::string &rest)
    {
        std::istringstream words(rest);
        std::size_t count = 0;
        std::string text;
        words >> count >> std::ws;
        std::getline(words, text);
        const std::size_t mark = text.find('#');
        std::string lines;
        for (std::size_t i = 0; i < count; ++i) {
            std::string line = text;
            if (mark != std::string::npos)
                line.replace(mark, 1, std::to_string(i));
            lines += line + '\n';
        }
        std::cout << lines << std::flush;
    }

    static std::string unescaped(const std::string &text)
    {
        std::string bytes;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] != '\\' || i + 1 == text.size()) {
                bytes += text[i];
                continue;
            }
            const char kind = text[++i];
            if (kind == 'x' && i + 2 < text.size()) {
                bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
                i += 2;
            } else {
                bytes += kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind;
            }
        }
        return bytes;
    }

    /// False at the end of the input.
    bool read()
    {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return false;
        const std::string got(bytes, static_cast<std::size_t>(count));
        received_ += got;
        note("input", std::ios::app) << got;
        return true;
    }

    void await(const std::string &text)
    {
        while (received_.find(text) == std::string::npos) {
            if (!read())
                std::_Exit(0);
        }
        received_.clear();
    }

    [[noreturn]] void serve()
    {
        while (read()) {
            if (!stubborn_ && received_.ends_with('q'))
                std::_Exit(0);
        }
        while (stubborn_)
            ::pause();
        std::_Exit(0);
    }

    std::string script_;
    std::string received_;
    bool stubborn_ = false;
};

} // namespace

int main()
{
    ::alarm(longestLife);
    const char *script = std::getenv("KELO_SCRIPT");
    if (!script) {
        std::cerr << "KELO_SCRIPT names no script\n";
        return 98;
    }
    Player(script).play();
}
