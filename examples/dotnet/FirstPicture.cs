// The first picture from .NET, late bound: no assembly has to be generated.
using System;

static class FirstPicture
{
    [STAThread]
    static int Main()
    {
        dynamic scope = Activator.CreateInstance(Type.GetTypeFromProgID("kvBandscope.kvBandscope", true));
        dynamic channel = Activator.CreateInstance(Type.GetTypeFromProgID("kvBandscope.FreqSlot", true));
        channel.sKey = "TX1";
        channel.dFreq = 462.55;         // MHz
        channel.dFreqLo = 462.542;      // the edges of the box; without them the box is twice dBW wide
        channel.dFreqHi = 462.558;
        channel.dBW = 16.0;             // kHz
        channel.dPwrDBM = 46.99;        // dBm
        channel.lColor = 0xB4771F;      // blue, green, red from left to right
        scope.AddTXChnl(channel);
        scope.FreqEndBuffer = 0.0;      // MHz; no margin, so that exactly the range below is shown
        scope.nGridX = 10;
        scope.DisplayMaxPwr = 60.0;     // dBm
        scope.DrawByRange(462.5, 462.7);
        scope.DrawDisplay();            // draw again, without the cursor line that DrawByRange draws
        double height = 0, width = 0;   // receive the size of the picture, in twips
        string name = "";
        string file = scope.DisplayToBMP(ref height, ref width, ref name);
        Console.WriteLine(file == "" ? "The picture cannot be saved." : "Picture saved as " + file);
        return file == "" ? 1 : 0;
    }
}
