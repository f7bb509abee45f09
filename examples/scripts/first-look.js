// Two channels, drawn and saved from JScript.
//
// Register the control first (regsvr32 kvBandscope.ocx), then:  cscript //nologo first-look.js
// The exit code is 42 on success. It is not 0, because a script that stops at a run-time error may also end with 0.

function addTransmitter(spectrum, key, label, frequency, power) {
    var slot = new ActiveXObject("kvBandscope.FreqSlot");
    slot.sKey = key;
    slot.sLabel = label;
    slot.dFreq = frequency; // MHz
    slot.dBW = 16; // kHz
    slot.dFreqLo = frequency - 0.008;
    slot.dFreqHi = frequency + 0.008;
    slot.dPwrDBM = power;
    slot.lColor = 0xb06c2b; // blue, green, red from left to right
    return spectrum.AddTXChnl(slot);
}

var spectrum = new ActiveXObject("kvBandscope.kvBandscope");
addTransmitter(spectrum, "TXWX2", "NOAA Weather Radio WX2", 162.4, 60);
addTransmitter(spectrum, "TXWX1", "NOAA Weather Radio WX1", 162.55, 57);
spectrum.nGridX = 16;
spectrum.FreqEndBuffer = 0;
spectrum.DisplayMaxPwr = 70;
spectrum.DisplayMinPwr = 0;
spectrum.DrawByRange(162.375, 162.575);

WScript.Echo(spectrum.NumTX + " channels from " + spectrum.dFreqMin.toFixed(3) + " to " + spectrum.dFreqMax.toFixed(3) + " MHz");
WScript.Echo("Display from " + spectrum.DisplayMinFreq.toFixed(3) + " to " + spectrum.DisplayMaxFreq.toFixed(3) + " MHz");

// JScript cannot pass variables by reference, so only the result gives the name of the file.
var file = spectrum.DisplayToBMP(0, 0, "");
WScript.Echo("Picture saved as " + file);
WScript.Quit(spectrum.NumTX === 2 && file !== "" && Math.abs(spectrum.DisplayCenterFreq - 162.475) < 1e-6 ? 42 : 1);
