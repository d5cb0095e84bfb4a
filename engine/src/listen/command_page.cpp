#include "listen/command_page.h"

#include "listen/jobs.h"

namespace kelo::engine {

namespace {

constexpr std::string_view style = R"(
  :root { color-scheme: light dark; }
  body { font: 28px/1.5 sans-serif; max-width: 44em; margin: 1.5em auto; padding: 0 1em;
         color: #000; background: #fff; }
  h1 { font-size: 2em; } h2 { font-size: 1.5em; margin-top: 1.5em; }
  table { border-collapse: collapse; width: 100%; }
  th, td { border-bottom: 2px solid; padding: 0.4em 0.6em; text-align: left; vertical-align: top; }
  kbd { font: bold 1em monospace; border: 2px solid; border-radius: 0.3em; padding: 0 0.3em; }
  @media (prefers-color-scheme: dark) { body { color: #fff; background: #000; } }
)";

std::string escaped(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

std::string row(const Job &job)
{
    std::string say;
    for (const Phrase &phrase : job.phrases) {
        if (!phrase.example.empty())
            say += (say.empty() ? "" : "<br>") + ("“" + escaped(sayable(phrase.example)) + "”");
    }
    const std::string key = job.key.empty() ? "" : "<kbd>" + escaped(job.key) + "</kbd>";
    return "<tr><td>" + say + "</td><td>" + key + "</td><td>" + escaped(job.meaning)
        + "</td></tr>\n";
}

} // namespace

std::string commandPage(std::string_view assistantName)
{
    const std::string name = escaped(assistantName);
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<title>What you can say to "
        + name + "</title>\n<style>" + std::string(style)
        + "</style>\n</head>\n<body>\n<h1>What you can say to " + name + "</h1>\n<p>Say “" + name
        + "” first, then any of these, in your own order of words. Or press the key.</p>\n";
    for (const JobGroup &group : jobGroups()) {
        if (group.title.empty())
            continue;
        html += "<h2>" + escaped(group.title)
            + "</h2>\n<table>\n<thead><tr><th scope=\"col\">Say</th><th scope=\"col\">Key</th>"
              "<th scope=\"col\">What happens</th></tr></thead>\n<tbody>\n";
        for (const Job &job : group.jobs) {
            if (!job.meaning.empty())
                html += row(job);
        }
        html += "</tbody>\n</table>\n";
    }
    return html + "</body>\n</html>\n";
}

} // namespace kelo::engine
