#include "worldmodel/Field.h"

#include <algorithm>
#include <array>

namespace {

struct Landmark {
    int code;
    Vector2D position;

    constexpr Landmark(int landmarkCode, float x, float y)
        : code(landmarkCode), position(x, y, CARTESIAN) {}
};

// RCC_Flag tells what the digits of a code mean.
// clang-format off
constexpr std::array<Landmark, 55> LANDMARKS = {{
    {48, -52.0F, 0.0F},        {58, 52.0F, 0.0F},
    {6, 0.0F, 0.0F},           {26, 0.0F, -34.0F},        {36, 0.0F, 34.0F},
    {24, -52.0F, -34.0F},      {34, -52.0F, 34.0F},       {25, 52.0F, -34.0F},      {35, 52.0F, 34.0F},
    {247, -35.5F, -20.16F},    {647, -35.5F, 0.0F},       {347, -35.5F, 20.16F},
    {257, 35.5F, -20.16F},     {657, 35.5F, 0.0F},        {357, 35.5F, 20.16F},
    {248, -52.0F, -7.01F},     {348, -52.0F, 7.01F},      {258, 52.0F, -7.01F},     {358, 52.0F, 7.01F},
    {5042, -50.0F, -39.0F}, {4042, -40.0F, -39.0F}, {3042, -30.0F, -39.0F}, {2042, -20.0F, -39.0F}, {1042, -10.0F, -39.0F},
    {2, 0.0F, -39.0F},
    {1052, 10.0F, -39.0F},  {2052, 20.0F, -39.0F},  {3052, 30.0F, -39.0F},  {4052, 40.0F, -39.0F},  {5052, 50.0F, -39.0F},
    {5043, -50.0F, 39.0F},  {4043, -40.0F, 39.0F},  {3043, -30.0F, 39.0F},  {2043, -20.0F, 39.0F},  {1043, -10.0F, 39.0F},
    {3, 0.0F, 39.0F},
    {1053, 10.0F, 39.0F},   {2053, 20.0F, 39.0F},   {3053, 30.0F, 39.0F},   {4053, 40.0F, 39.0F},   {5053, 50.0F, 39.0F},
    {3024, -57.0F, -30.0F}, {2024, -57.0F, -20.0F}, {1024, -57.0F, -10.0F},
    {4, -57.0F, 0.0F},
    {1034, -57.0F, 10.0F},  {2034, -57.0F, 20.0F},  {3034, -57.0F, 30.0F},
    {3025, 57.0F, -30.0F},  {2025, 57.0F, -20.0F},  {1025, 57.0F, -10.0F},
    {5, 57.0F, 0.0F},
    {1035, 57.0F, 10.0F},   {2035, 57.0F, 20.0F},   {3035, 57.0F, 30.0F},
}};
// clang-format on

// Codes of the side lines.
constexpr int TOP_LINE = 2;
constexpr int BOTTOM_LINE = 3;
constexpr int LEFT_LINE = 4;
constexpr int RIGHT_LINE = 5;

/// The facing of a player that plays from the left and sees the line at `angle`.
float faceFromLine(int code, float angle) {
    switch (code) {
    case TOP_LINE:
        return angle < 0.0F ? angle + 180.0F : angle;
    case BOTTOM_LINE:
        return angle <= 0.0F ? angle + 360.0F : angle + 180.0F;
    case LEFT_LINE:
        if (angle > 0.0F) return angle + 90.0F;
        return angle < 0.0F ? angle + 270.0F : angle;
    case RIGHT_LINE:
        if (angle > 0.0F) return angle + 270.0F;
        return angle < 0.0F ? angle + 90.0F : angle;
    default:
        return angle;
    }
}

} // namespace

Vector2D Field::landmark(int code) {
    auto const* const found =
        std::find_if(LANDMARKS.begin(), LANDMARKS.end(),
                     [code](Landmark const& candidate) { return candidate.code == code; });
    return found == LANDMARKS.end() ? Vector2D() : found->position;
}

float Field::computeFaceDirection(std::span<RCC_Line const> lines, FieldSide side) {
    float face = 0.0F;
    if (!lines.empty()) {
        bool const secondDecides = lines.size() > 1 && lines[0].distance <= lines[1].distance;
        RCC_Line const& line = lines[secondDecides ? 1 : 0];
        face = faceFromLine(line.code, line.direction.degrees());
    }
    return side == FieldSide::right ? normalizeTo360Deg(face + 180.0F) : face;
}

Vector2D Field::computePosFromFlag(RCC_Flag const& flag, float faceDirection, FieldSide side) {
    Vector2D const rel(flag.distance, faceDirection - flag.direction.degrees(), POLAR);
    switch (side) {
    case FieldSide::left:
        return landmark(flag.code) - rel;
    case FieldSide::right:
        return -landmark(flag.code) - rel;
    case FieldSide::unknown:
        break;
    }
    return {};
}
