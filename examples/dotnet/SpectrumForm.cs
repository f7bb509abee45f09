// A Windows Forms program with the control on its form. Needs the two assemblies that aximp generates.
using System;
using System.Drawing;
using System.Windows.Forms;
using kvBandscope;

sealed class SpectrumForm : Form
{
    private readonly AxkvBandscope.AxkvBandscope scope = new AxkvBandscope.AxkvBandscope();

    private SpectrumForm()
    {
        Text = "Spectrum";
        ClientSize = new Size(900, 600);
        ((System.ComponentModel.ISupportInitialize)scope).BeginInit();
        scope.Dock = DockStyle.Fill;
        Controls.Add(scope);
        ((System.ComponentModel.ISupportInitialize)scope).EndInit();
        scope.ChgFreqRange += (sender, e) => Text = $"{e.dMin:F3} to {e.dMax:F3} MHz";
        scope.ChgHeight += (sender, e) => ClientSize = new Size(ClientSize.Width, Pixels(e.iHgt));
        Load += (sender, e) => ShowChannels();
    }

    // Twips are converted with the resolution of the whole screen.
    private static int Pixels(int twips)
    {
        using (Graphics screen = Graphics.FromHwnd(IntPtr.Zero))
            return (int)Math.Round(twips * screen.DpiY / 1440);
    }

    private void ShowChannels()
    {
        FreqSlot channel = new FreqSlot     // a new object for each channel
        {
            sKey = "TX1", dFreq = 462.55, dFreqLo = 462.542, dFreqHi = 462.558, dBW = 16, dPwrDBM = 46.99,
            lColor = 0xB4771F
        };
        scope.AddTXChnl(channel);
        FreqSlot product = new FreqSlot
        {
            sKey = "TXIM1", sLabel = "Intermod Product [third order product] 2A-B", dFreq = 462.6,
            dBW = 24,                       // kHz; the box is twice as wide
            dPwrDBM = 10, lColor = 0x5AA0E3
        };
        product.nIMComps = 2;               // set the number of components first
        product.set_nIMComp(0, 2);
        product.set_dIMCompFreq(0, 462.575);
        product.set_sIMCompLabel(0, "Repeater 16");
        product.set_nIMComp(1, -1);
        product.set_dIMCompFreq(1, 462.55);
        product.set_sIMCompLabel(1, "Repeater 15");
        scope.AddTXChnl(product);
        scope.FreqEndBuffer = 0;
        scope.nGridX = 10;
        scope.DisplayMaxPwr = 60;
        scope.DrawByRange(462.5, 462.7);
    }

    [STAThread]
    private static void Main()
    {
        Application.EnableVisualStyles();
        Application.Run(new SpectrumForm());
    }
}
