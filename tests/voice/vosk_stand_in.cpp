// Stands in for the Vosk library, with its C interface. "Hears" what the file "says" in its model's
// folder has, once there was sound and then half a second of silence. The model knows the words in
// "words"; the grammar that it is given is kept in "grammar".

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string contents(const std::string &path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

struct VoskModel {
    std::string folder;
};

struct VoskRecognizer {
    VoskModel *model;
    bool spoke = false;
    int quiet = 0;
    std::string answer;

    const char *tell(const char *field, bool words)
    {
        const std::string said = words ? contents(model->folder + "/says") : "";
        answer = std::string("{\"") + field + "\" : \"" + said + "\"}";
        return answer.c_str();
    }
};

extern "C" {
VoskModel *vosk_model_new(const char *path)
{
    return contents(std::string(path) + "/words").empty() ? nullptr : new VoskModel{path};
}
void vosk_model_free(VoskModel *model)
{
    delete model;
}
int vosk_model_find_word(VoskModel *model, const char *word)
{
    const std::string words = ' ' + contents(model->folder + "/words") + ' ';
    return words.find(std::string(" ") + word + ' ') == std::string::npos ? -1 : 1;
}
VoskRecognizer *vosk_recognizer_new(VoskModel *model, float rate)
{
    return rate == 16000 ? new VoskRecognizer{model, false, 0, {}} : nullptr;
}
VoskRecognizer *vosk_recognizer_new_grm(VoskModel *model, float rate, const char *grammar)
{
    std::ofstream(model->folder + "/grammar") << grammar;
    return vosk_recognizer_new(model, rate);
}
void vosk_recognizer_free(VoskRecognizer *recogniser)
{
    delete recogniser;
}
int vosk_recognizer_accept_waveform_s(VoskRecognizer *recogniser, const short *samples, int count)
{
    const bool loud = std::any_of(samples, samples + count, [](short s) { return s > 3000; });
    recogniser->spoke = recogniser->spoke || loud;
    recogniser->quiet = loud ? 0 : recogniser->quiet + count;
    return recogniser->spoke && recogniser->quiet >= 8000 ? 1 : 0;
}
const char *vosk_recognizer_result(VoskRecognizer *recogniser)
{
    const bool spoke = recogniser->spoke;
    recogniser->spoke = false;
    return recogniser->tell("text", spoke);
}
const char *vosk_recognizer_partial_result(VoskRecognizer *recogniser)
{
    return recogniser->tell("partial", recogniser->spoke);
}
const char *vosk_recognizer_final_result(VoskRecognizer *recogniser)
{
    return vosk_recognizer_result(recogniser);
}
void vosk_recognizer_reset(VoskRecognizer *recogniser)
{
    recogniser->spoke = false;
}
void vosk_set_log_level(int /*level*/) { }
}
