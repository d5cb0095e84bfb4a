#include "voice/name/name_doubt.h"

#include <algorithm>

namespace kelo {

namespace {

// What speaks for a call, as likelihoods: a name on its own is one word of 50, after "hey" nearly
// the only one; what is asked for after it is one of a hundred or so.
constexpr double leadsToName = 0.1;
constexpr double followsName = 0.0075;

/// Measured with ten names, called in 18 ways and not at all.
constexpr double wantedAWord = 7;

bool isFollowed(const std::vector<AccountedWord> &account, std::size_t place)
{
    return place + 1 < account.size()
        && (account[place + 1].token.isEmpty() || account[place + 1].likelihood >= followsName);
}

} // namespace

bool isLedUpTo(const std::vector<AccountedWord> &account, std::size_t place)
{
    return place == 0 || account[place - 1].token.isEmpty()
        || account[place].likelihood >= leadsToName;
}

double advantageWanted(const std::vector<AccountedWord> &account, const QString &name)
{
    return wantedAWord
        * static_cast<double>(std::ranges::count_if(account, [&](const AccountedWord &word) {
              return !word.token.isEmpty() && word.token != name;
          }));
}

bool isLone(const std::vector<AccountedWord> &account, std::size_t place)
{
    return !isLedUpTo(account, place) && !isFollowed(account, place);
}

} // namespace kelo
