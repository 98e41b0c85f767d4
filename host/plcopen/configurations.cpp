// Tasks and program instances. The format's versions and their producers write a task's interval as
// an IEC duration, as a clock time or as an XML duration.

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <regex>
#include <string>

#include "host/plcopen/parts.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// IEC durations are compared in capitals.
std::string Upper(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return upper;
}

// "20MS", "1S500MS", "0.5S": numbers with units.
bool IsUnits(std::string_view text) {
    while (!text.empty()) {
        const std::size_t number = std::min(text.find_first_not_of("0123456789._"), text.size());
        const std::size_t unit =
            std::min(text.find_first_not_of("DHMSUN_", number), text.size()) - number;
        if (!IsDigit(text.front()) || unit == 0) {
            return false;
        }
        text.remove_prefix(number + unit);
    }
    return true;
}

// Whole numbers lose their leading zeros and, when nothing remains, their unit.
void AppendUnit(std::string& text, std::string_view number, std::string_view unit) {
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    if (!number.empty()) {
        text.append(number).append(unit);
    }
}

// "hh:mm:ss" with an optional fraction.
bool FromClock(std::string_view clock, std::string& text) {
    const std::string_view fraction = clock.substr(std::min(clock.find('.'), clock.size()));
    clock.remove_suffix(fraction.size());
    if (clock.size() != 8 || clock[2] != ':' || clock[5] != ':') {
        return false;
    }
    const std::string_view hours = clock.substr(0, 2);
    const std::string_view minutes = clock.substr(3, 2);
    const std::string_view seconds = clock.substr(6, 2);
    if (!IsDigits(hours) || !IsDigits(minutes) || !IsDigits(seconds) ||
        (!fraction.empty() && !IsDigits(fraction.substr(1)))) {
        return false;
    }
    std::string digits(fraction.empty() ? fraction : fraction.substr(1));
    digits.resize(std::max<std::size_t>(digits.size(), 3), '0');
    digits.resize(std::max<std::size_t>(digits.find_last_not_of('0') + 1, 3));
    std::string units;
    AppendUnit(units, hours, "h");
    AppendUnit(units, minutes, "m");
    AppendUnit(units, seconds, "s");
    const std::string_view whole = std::string_view(digits).substr(0, 3);
    if (digits.size() == 3) {
        AppendUnit(units, whole, "ms");
    } else {
        units += std::to_string(std::stoi(std::string(whole))) + "." + digits.substr(3) + "ms";
    }
    text = "T#" + (units.empty() ? "0s" : units);
    return true;
}

// "P1DT2H30M0.5S", in capitals. What a unit has more than the next higher one holds is carried
// over, as IEC durations have it; years and months have no length.
bool FromXmlDuration(const std::string& duration, std::string& text) {
    static const std::regex form(
        "P(?:0+Y)?(?:0+M)?(?:([0-9]{1,9})D)?"
        "(?:T(?:([0-9]{1,9})H)?(?:([0-9]{1,9})M)?(?:([0-9]{1,9})([.][0-9]+)?S)?)?");
    constexpr std::size_t kLongest = 60;
    constexpr uint64_t kOfNext[] = {0, 24, 60, 60};
    constexpr char kUnits[] = "dhms";
    std::smatch parts;
    const bool hasAmount = duration.size() > 2 && duration.back() != 'T';
    if (duration.size() > kLongest || !hasAmount || !std::regex_match(duration, parts, form)) {
        return false;
    }
    uint64_t amounts[4] = {};
    std::size_t highest = 3;
    for (std::size_t i = 4; i-- > 0;) {
        amounts[i] = parts[i + 1].matched ? std::stoull(parts[i + 1]) : 0;
        highest = amounts[i] != 0 ? i : highest;
    }
    for (std::size_t i = 3; i > highest; --i) {
        amounts[i - 1] += amounts[i] / kOfNext[i];
        amounts[i] %= kOfNext[i];
    }
    std::string units;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string fraction = i == 3 ? parts[5].str() : std::string();
        if (amounts[i] != 0 || !fraction.empty()) {
            units += std::to_string(amounts[i]) + fraction + kUnits[i];
        }
    }
    text = "T#" + (units.empty() ? "0s" : units);
    return true;
}

bool IsName(std::string_view text) {
    const auto isNamePart = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.';
    };
    return !IsDigit(text.front()) && std::all_of(text.begin(), text.end(), isNamePart);
}

// An interval as an IEC duration. Beside IEC text, clock times ("00:00:00.100") and XML durations
// ("PT0.1S") are understood; a name stays as it is. False when the text is none of these; it is
// then returned unchanged.
bool IntervalText(std::string_view interval, std::string& text) {
    interval = Trim(interval);
    text = interval;
    if (interval.empty()) {
        return true;
    }
    const std::string upper = Upper(interval);
    const std::size_t mark = upper.find('#');
    if (mark != upper.npos) {
        const std::string prefix = upper.substr(0, mark);
        const std::string units = upper.substr(mark + 1);
        const bool isDuration =
            prefix == "T" || prefix == "TIME" || prefix == "LT" || prefix == "LTIME";
        return isDuration && !units.empty() && IsUnits(units);
    }
    if (IsUnits(upper)) {
        text = "T#" + text;
        return true;
    }
    return FromXmlDuration(upper, text) || FromClock(interval, text) || IsName(interval);
}

}  // namespace

void ReadProgramInstance(Context& context, const Element& instance, ID parent) {
    // The format's first version says "type".
    const std::string_view older = Trim(instance.Attribute("type"));
    ProgramInstance program;
    program.name = context.Intern(Required(context, instance, "name"));
    program.typeName =
        context.Intern(older.empty() ? Required(context, instance, "typeName") : older);
    program.comment = context.Documentation(instance);
    program.parent = parent;
    program.line = instance.line;
    program.column = instance.column;
    if (*program.typeName != 0) {
        context.project.AddProgramInstance(program);
    }
}

void ReadTask(Context& context, const Element& element, ID resource) {
    Task task;
    task.name = context.Intern(HolderName(context, element, Required(context, element, "name")));
    if (*task.name == 0) {
        return;
    }
    std::string interval;
    if (!IntervalText(element.Attribute("interval"), interval)) {
        context.Warn(element, kInterval,
                     Say("the interval '{}' is no duration and no name", interval));
    }
    task.interval = context.Intern(interval);
    task.event = context.Intern(Trim(element.Attribute("single")));
    task.priority = context.Intern(Trim(element.Attribute("priority")));
    task.comment = context.Documentation(element);
    task.resource = resource;
    task.line = element.line;
    task.column = element.column;
    const ID id = context.project.AddTask(task);
    for (const auto& child : element.children) {
        if (child->Name() == "pouInstance") {
            ReadProgramInstance(context, *child, id);
        }
    }
}

}  // namespace lq::host::plcopen
