#pragma once

#include <array>
#include <string_view>

namespace tallyhorn {

/// The columns of the six lists.
enum class MessageColumn { DateLogged, Alarm, LogType, AccountName, Computer, RecordNum };

constexpr int MessageColumnCount = 6;
/// RecordNum, the last column, is never shown: its width stays 0 and is neither saved nor restored.
constexpr int SizedColumnCount = 5;

constexpr std::array<std::string_view, MessageColumnCount> MessageColumnHeaders = {
    "Date Logged", "Alarm", "Log Type", "Account Name", "Computer", "RecordNum"};

}  // namespace tallyhorn
