// The first picture from JScript. JScript cannot pass variables by reference, so only the result gives the file's name.
var scope = new ActiveXObject("kvBandscope.kvBandscope");
var channel = new ActiveXObject("kvBandscope.FreqSlot");
channel.sKey = "RX1";
channel.dFreq = 467.55; // MHz
channel.dFreqLo = 467.542; // the edges of the box; without them the box is twice dBW wide
channel.dFreqHi = 467.558;
channel.dBW = 16; // kHz
channel.dPwrDBM = 20; // dBm
channel.lColor = 0x388e3c; // blue, green, red from left to right
scope.AddRXChnl(channel);
scope.FreqEndBuffer = 0; // MHz; no margin, so that exactly the range below is shown
scope.nGridX = 10; // 10 divisions of 20 kHz
scope.DisplayMaxPwr = 40; // dBm
scope.DrawByRange(467.5, 467.7); // MHz
scope.DrawDisplay(); // draw again, without the cursor line that DrawByRange draws
var file = scope.DisplayToBMP(0, 0, "");
WScript.Echo("Picture saved as " + file);
WScript.Quit(file !== "" ? 42 : 1); // 42 means success: after a script error the exit code may be 0
