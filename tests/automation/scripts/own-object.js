// A plain object of a script as a channel: its data members are read and written by name.
var scope = new ActiveXObject("kvBandscope.kvBandscope");
var channel = {
    dFreq: 450, dFreqAlt: 0, dBW: 12.5, dFreqHi: 0, dFreqLo: 0, dPwrDBM: 2,
    sLabel: "an object", sFreqUnits: "", sBWUnits: "", sKey: "TXobject",
    lColorLine: 0, lColor: 255, nIMComps: 0, bVisible: true, bDrawn: false, iFillStyle: 0
};
WScript.Echo("index " + scope.AddTXChnl(channel));
WScript.Echo("same object " + (scope.GetTXChnl(0) == channel));
WScript.Echo("edges " + channel.dFreqLo + " " + channel.dFreqHi);
WScript.Echo("units " + channel.sFreqUnits + " " + channel.sBWUnits);
WScript.Echo("fill style " + channel.iFillStyle);
scope.DrawDisplay();
WScript.Echo("drawn " + channel.bDrawn);
WScript.Echo("found " + scope.GetTXbyKey("TXobject").dFreq);
WScript.Quit(42);
