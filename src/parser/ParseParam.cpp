#include "parser/ParseParam.h"

#include "parser/ParamTables.h"

#include <algorithm>
#include <bitset>
#include <cctype>
#include <cstddef>
#include <ostream>

namespace rcc {

namespace {

bool readNumber(RCC_Scanner& scanner, double& value) {
    return scanner.real(value);
}
bool readNumber(RCC_Scanner& scanner, int& value) {
    return scanner.integer(value);
}

template <class Record>
bool readField(RCC_Scanner& scanner, ParamField<Record> const& field, Record& record) {
    return std::visit([&](auto member) { return readNumber(scanner, record.*member); },
                      field.member);
}

/// Without regard to case and underscores.
bool sameName(std::string_view a, std::string_view b) {
    auto const skipUnderscores = [](std::string_view& name) {
        name.remove_prefix(std::min(name.find_first_not_of('_'), name.size()));
    };
    auto const lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    for (;; a.remove_prefix(1), b.remove_prefix(1)) {
        skipUnderscores(a);
        skipUnderscores(b);
        if (a.empty() || b.empty()) return a.empty() && b.empty();
        if (lower(a.front()) != lower(b.front())) return false;
    }
}

/// Index in the table, or its size. The server's own names go first: its `wind_random` is a switch,
/// not our windRandom.
template <class Record, std::size_t N>
std::size_t findField(std::array<ParamField<Record>, N> const& table, std::string_view name) {
    auto field =
        std::ranges::find_if(table, [&](auto const& f) { return sameName(f.wireName, name); });
    if (field == table.end()) {
        field = std::ranges::find_if(table, [&](auto const& f) { return sameName(f.name, name); });
    }
    return static_cast<std::size_t>(field - table.begin());
}

/// Which fields of a table a message has set.
template <std::size_t N>
using Given = std::bitset<N>;

template <class Record, std::size_t N>
bool readOneNamed(RCC_Scanner& scanner, std::array<ParamField<Record>, N> const& table,
                  Record& record, Given<N>& given) {
    if (!scanner.open()) return false;
    std::string_view const name = scanner.word();
    if (name.empty()) return false;
    std::size_t const index = findField(table, name);
    if (index == N) return scanner.skipItems() && scanner.close();
    given.set(index);
    return readField(scanner, table[index], record) && scanner.close();
}

template <class Record, std::size_t N>
bool readNamed(RCC_Scanner& scanner, std::array<ParamField<Record>, N> const& table, Record& record,
               Given<N>& given) {
    while (!scanner.atClose()) {
        if (!readOneNamed(scanner, table, record, given)) return false;
    }
    return given.any();
}

template <class Record, std::size_t N>
bool readRecord(RCC_Scanner& scanner, std::array<ParamField<Record>, N> const& table,
                Record& record, Given<N>& given) {
    if (scanner.atOpen()) return readNamed(scanner, table, record, given);
    given.set();
    return std::ranges::all_of(
        table, [&](auto const& field) { return readField(scanner, field, record); });
}

} // namespace

bool parseServerParam(RCC_Scanner& scanner, RCC_ServerParam& param) {
    Given<SERVER_PARAM_FIELDS.size()> given;
    if (!readRecord(scanner, SERVER_PARAM_FIELDS, param, given)) return false;
    if (!given[findField(SERVER_PARAM_FIELDS, "kickableArea")]) {
        param.kickableArea = param.playerSize + param.kickableMargin + param.ballSize;
    }
    if (!given[findField(SERVER_PARAM_FIELDS, "controlRadiusWidth")]) {
        param.controlRadiusWidth = param.controlRadius - param.playerSize;
    }
    return true;
}

bool parsePlayerParam(RCC_Scanner& scanner, RCC_PlayerParam& param) {
    Given<PLAYER_PARAM_FIELDS.size()> given;
    return readRecord(scanner, PLAYER_PARAM_FIELDS, param, given);
}

bool parsePlayerType(RCC_Scanner& scanner, RCC_PlayerType& type) {
    Given<PLAYER_TYPE_FIELDS.size()> given;
    return readRecord(scanner, PLAYER_TYPE_FIELDS, type, given) && given.all() && type.id >= 0;
}

} // namespace rcc

void RCC_PlayerType::print(std::ostream& os) const {
    os << ' ';
    for (auto const& field : rcc::PLAYER_TYPE_FIELDS) {
        std::visit([&](auto member) { os << this->*member << ' '; }, field.member);
    }
    os << '\n';
}
