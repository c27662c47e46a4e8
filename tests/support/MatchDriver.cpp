#include "tests/support/MatchDriver.h"

namespace support {

namespace {

practice::MatchOptions optionsOf(MatchDriver::Setup const& setup) {
    practice::MatchOptions options;
    options.halfCycles = setup.halfCycles;
    options.seed = setup.seed;
    options.kickOff.players = setup.scripted ? practice::MAX_PLAYERS : setup.unum + setup.opponents;
    return options;
}

std::string initText(std::string const& team, bool goalie) {
    return "(init " + team + " (version 7.08)" + (goalie ? "(goalie)" : "") + ")";
}

} // namespace

MatchDriver::MatchDriver(Setup const& setup)
    : match(optionsOf(setup)), agent(setup.goalie), id(practice::NOBODY) {
    auto const joinOpponents = [&] {
        int const opponents = setup.scripted ? practice::PLAYERS_PER_TEAM : setup.opponents;
        for (int i = 0; i < opponents; ++i) {
            match.join(initText(AgentHarness::OTHER_TEAM, i == 0));
        }
    };
    // The first team name to appear plays from the left.
    if (setup.right) joinOpponents();
    for (int i = 1; i < setup.unum; ++i) {
        match.join(initText(AgentHarness::TEAM, i == 1 && !setup.goalie));
    }
    id = match.join(initText(AgentHarness::TEAM, setup.goalie)).player;
    for (int i = setup.unum; setup.scripted && i < practice::PLAYERS_PER_TEAM; ++i) {
        match.join(initText(AgentHarness::TEAM, false));
    }
    if (!setup.right) joinOpponents();
    if (setup.scripted) others.emplace(match, id);
    agent.world.setSeeTimingSettled(); // no clock here that sees could be late by
    deliver();
}

std::vector<std::string> MatchDriver::step() {
    std::vector<std::string> sent;
    bool stepped = false;
    announced.clear();
    for (int poll = 0; !stepped; ++poll) {
        constexpr int LAST_POLL = 9;
        if (poll == LAST_POLL) {
            for (std::string const& command : pending) {
                match.receive(id, command);
            }
            sent.swap(pending);
            if (others) others->act();
        }
        stepped = match.poll();
        deliver();
    }
    return sent;
}

void MatchDriver::kickOff() {
    constexpr int MAX_STEPS = 2000;
    for (int i = 0; i < MAX_STEPS && match.world().mode != practice::Phase::playOn; ++i) {
        step();
    }
}

void MatchDriver::deliver() {
    for (practice::Outgoing const& message : match.outbox().messages()) {
        if (message.player != id) continue;
        constexpr std::string_view REFEREE = " referee ";
        if (std::size_t const at = message.text.find(REFEREE); at != std::string::npos) {
            announced.push_back(message.text.substr(at + REFEREE.size()));
            announced.back().pop_back(); // the parenthesis
        }
        agent.sense(message.text);
        bool const wakes =
            message.text.starts_with("(sense_body") || message.text.starts_with("(see");
        if (wakes && agent.world.integrateSensorInfo()) {
            agent.decide();
            pending = agent.allCommands();
        }
    }
    match.outbox().clear();
}

} // namespace support
