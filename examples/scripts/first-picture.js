// The first picture from JScript, which passes no variables by reference: the name of the file is the result.
var scope = new ActiveXObject("kvBandscope.kvBandscope");
var channel = new ActiveXObject("kvBandscope.FreqSlot");
channel.sKey = "RX1";
channel.dFreq = 467.55; // MHz
channel.dBW = 20; // kHz
channel.dPwrDBM = 20; // dBm
channel.lColor = 0x388e3c; // blue, green, red from left to right
scope.AddRXChnl(channel);
scope.DisplayMaxPwr = 40; // dBm
scope.DrawByRange(467.3, 467.8);
var file = scope.DisplayToBMP(0, 0, "");
WScript.Echo("Picture saved as " + file);
WScript.Quit(file !== "" ? 42 : 1); // 42: a script that stops at an error may end with 0
