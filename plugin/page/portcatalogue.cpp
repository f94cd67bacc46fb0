#include "portcatalogue.h"

#include "kelplugin/interfacemanager.h"

#include <QComboBox>
#include <QVector>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

// Characters of the longest port name a drop-down shows in full without growing.
const int kTypicalNameLength = 12;

// One run of a name, pointing into it: a number when its digits fit an int, otherwise text.
struct Token
{
    bool isNumber;
    int number;
    QStringView text;
};

bool isAsciiLetter(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z');
}

// Appends the runs QRegExp("([A-Za-z]+|\\d+)") finds, its \d being QChar::isDigit(); every
// other character only separates runs.
void tokenise(const QString &name, std::vector<Token> *tokens)
{
    for (int i = 0; i < name.size();) {
        int j = i + 1;
        if (isAsciiLetter(name[i])) {
            while (j < name.size() && isAsciiLetter(name[j]))
                ++j;
            tokens->push_back({false, 0, QStringView(name).mid(i, j - i)});
        } else if (name[i].isDigit()) {
            while (j < name.size() && name[j].isDigit())
                ++j;
            const QStringView text = QStringView(name).mid(i, j - i);
            bool isNumber = false;
            const int number = text.toString().toInt(&isNumber, 10);
            tokens->push_back({isNumber, number, text});
        }
        i = j;
    }
}

// Numbers against numbers by value; anything else as case-sensitive text, a number as its
// plain decimal form.
int compareTokens(const Token &a, const Token &b)
{
    if (a.isNumber && b.isNumber)
        return a.number < b.number ? -1 : (a.number > b.number ? 1 : 0);
    // A decimal form starts with a digit, below every letter.
    if (a.isNumber != b.isNumber && isAsciiLetter((a.isNumber ? b : a).text.front()))
        return a.isNumber ? -1 : 1;
    if (!a.isNumber && !b.isNumber)
        return a.text.compare(b.text, Qt::CaseSensitive);
    const QString textA = a.isNumber ? QString::number(a.number) : a.text.toString();
    const QString textB = b.isNumber ? QString::number(b.number) : b.text.toString();
    return textA.compare(textB, Qt::CaseSensitive);
}

// The runs of names a and b are tokens [first[a], first[a + 1]) and [first[b], first[b + 1]).
bool tokensLess(const std::vector<Token> &tokens, const std::vector<int> &first, int a, int b)
{
    const int countA = first[std::size_t(a) + 1] - first[std::size_t(a)];
    const int countB = first[std::size_t(b) + 1] - first[std::size_t(b)];
    for (int i = 0; i < std::min(countA, countB); ++i) {
        const int c = compareTokens(tokens[std::size_t(first[std::size_t(a)] + i)],
            tokens[std::size_t(first[std::size_t(b)] + i)]);
        if (c != 0)
            return c < 0;
    }
    return countA < countB; // every shared run equal: fewer runs first
}

} // namespace

QStringList PortCatalogue::analogInputs()
{
    return ports(QStringLiteral("AI"));
}

QStringList PortCatalogue::analogOutputs()
{
    return ports(QStringLiteral("AO"));
}

QStringList PortCatalogue::digitalInputs()
{
    return ports(QStringLiteral("DI"));
}

QStringList PortCatalogue::digitalOutputs()
{
    return ports(QStringLiteral("DO"));
}

QStringList PortCatalogue::groupInputs()
{
    return ports(QStringLiteral("GI"));
}

QStringList PortCatalogue::groupOutputs()
{
    return ports(QStringLiteral("GO"));
}

QStringList PortCatalogue::ports(const QString &type)
{
    return sorted(kelplugin::kelPluginInterface().getIOByType(type));
}

QStringList PortCatalogue::sorted(const QStringList &names)
{
    // Every name is tokenised once; the comparisons only read the tokens.
    std::vector<Token> tokens;
    std::vector<int> first;
    tokens.reserve(std::size_t(names.size()) * 3);
    first.reserve(std::size_t(names.size()) + 1);
    for (const QString &name : names) {
        first.push_back(int(tokens.size()));
        tokenise(name, &tokens);
    }
    first.push_back(int(tokens.size()));
    std::vector<int> order(std::size_t(names.size()));
    std::iota(order.begin(), order.end(), 0);
    // Digit runs beyond int can make the comparison contradict itself (3 < 10, 10 < 2147483648
    // as text, 2147483648 < 3 as text). A merge sort only ever moves within its ranges, so the
    // result is still a permutation of the names.
    std::stable_sort(
        order.begin(), order.end(), [&](int a, int b) { return tokensLess(tokens, first, a, b); });
    QStringList result;
    result.reserve(names.size());
    for (const int index : order)
        result.append(names[index]);
    return result;
}

bool PortCatalogue::lessThan(const QString &a, const QString &b)
{
    std::vector<Token> tokens;
    tokenise(a, &tokens);
    const int firstOfB = int(tokens.size());
    tokenise(b, &tokens);
    return tokensLess(tokens, {0, firstOfB, int(tokens.size())}, 0, 1);
}

void PortCatalogue::fitDropDown(QComboBox *dropDown)
{
    dropDown->setMinimumContentsLength(kTypicalNameLength);
}

void PortCatalogue::selectPort(QComboBox *dropDown, const QStringList &items, const QString &name)
{
    const int index = items.indexOf(name);
    if (index >= 0)
        dropDown->setCurrentIndex(index);
}
