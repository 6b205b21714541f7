#pragma once

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// The fields of a notification of 21 August 2008, 2:05:09 PM.  A test sets those that matter to it.
struct Notification {
    std::string Name = "Full";
    std::string Log = "System";
    std::string Account = "JOE";
    std::string Computer = "PC";
    std::string Type = "Error";
    std::string Description = "text";
    std::string Source = "Disk";
};

/// Returns the text that is sent by mailslot, without the NUL at its end.
inline std::string NetBiosText(const Notification& told) {
    return "Date: 08/21/2008 14:05:09\r\n\r\n\r\nAlarm (" + told.Name + ")\r\n\r\n\r\nLog: " + told.Log +
           "\r\nSource: " + told.Source + "\r\nType: " + told.Type +
           "\r\nCategory: None\r\nEventID: 7\r\nAccount: " + told.Account + "\r\nComputer: " + told.Computer +
           "\r\nDescription: " + told.Description;
}

/// Returns the text that is sent by syslog.
inline std::string Datagram(const Notification& told) {
    return "<13>Alarm (" + told.Name + ") Event raised: " + told.Log + " Log, 08/21/2008 2:05:09 PM, " +
           told.Source + ", " + told.Type + ", None, 7, " + told.Account + ", " + told.Computer + ", " +
           told.Description;
}

/// Returns the record that the parsers read from both texts.
inline AlarmRecord RecordOf(const Notification& told) {
    AlarmRecord record;
    record.DateTime =
        MakeAlarmDate({.Year = 2008, .Month = 8, .Day = 21, .Hour = 14, .Minute = 5, .Second = 9}).value();
    record.AlarmName = told.Name;
    record.LogType = told.Log;
    record.Source = told.Source;
    record.TypeOfEvent = told.Type;
    record.Category = "None";
    record.EventID = 7;
    record.AccountName = told.Account;
    record.Computer = told.Computer;
    record.Description = told.Description;
    return record;
}

}  // namespace tallyhorn
