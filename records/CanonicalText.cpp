#include "records/CanonicalText.h"

namespace tallyhorn {

std::string BuildMessageText(const AlarmRecord& alarm) {
    std::string text = "Date: " + FormatGeneralDate(alarm.DateTime);
    text += "\r\nAlarm Name: " + alarm.AlarmName;
    text += "\r\nLog Type: " + alarm.LogType;
    text += "\r\nSource: " + alarm.Source;
    text += "\r\nType Of Event: " + alarm.TypeOfEvent;
    text += "\r\nCategory: " + alarm.Category;
    text += "\r\nEventID: " + std::to_string(alarm.EventID);
    text += "\r\nAccount: " + alarm.AccountName;
    text += "\r\nComputer: " + alarm.Computer;
    text += "\r\nDescription: \r\n" + alarm.Description;
    return text;
}

}  // namespace tallyhorn
