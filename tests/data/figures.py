"""What other sources give for values of the engineering database.

A line: material | phase or change | parameter | pressure, Pa, or nothing | allowed difference, % | argument:value ...
The argument is a temperature, K, or for tables over pressure alone a pressure; "-" asks for a constant.
"""

FIGURES = """
# IAPWS R7-97(2012) with R12-08 and R15-11 (the industrial formulation), and IAPWS R1-76(2014)
Water | Liquid | Density | 1e5 | 0.1 | 273.16:999.844 280:999.910 290:998.802 298.15:997.047 300:996.557 310:993.389 320:989.437 330:984.801 340:979.550 350:973.741 360:967.414 370:960.598
Water | Liquid | Density | 1e6 | 0.1 | 280:1000.35 300:996.96 320:989.83 340:979.94 360:967.82 400:937.87 450:890.39
Water | Liquid | Density | 1e7 | 0.1 | 280:1004.67 300:1000.95 320:993.70 340:983.84 360:971.85 400:942.41 450:896.17
Water | Liquid | Density | 5e7 | 0.1 | 280:1022.90 300:1017.84 320:1010.11 340:1000.28 360:988.72 400:961.12 450:919.17
Water | Liquid | Specific heat capacity | 1e5 | 0.5 | 273.16:4219.4 280:4201.0 290:4187.3 300:4181.1 320:4179.0 340:4186.2 360:4201.8 370:4212.8
Water | Liquid | Dynamic viscosity | 1e5 | 1 | 273.16:1.7911e-3 280:1.4336e-3 293.15:1.0016e-3 300:8.5374e-4 320:5.7673e-4 340:4.2164e-4 360:3.2586e-4
Water | Liquid | Thermal conductivity | 1e5 | 1 | 273.16:0.5557 280:0.5720 298.15:0.6065 320:0.6370 340:0.6572 370:0.6760
Water | Liquid | Surface tension | | 0.5 | 283.15:0.07422 293.15:0.07274 313.15:0.06960 333.15:0.06624 353.15:0.06267 373.15:0.05891 413.15:0.05086 453.15:0.04219 523.15:0.02604 573.15:0.01436
Water | Liquid | Speed of sound | 3e6 | 0.5 | 300:1507.73921 500:1240.71337
Water | Steam | Density | 1e5 | 0.2 | 380:0.57821 400:0.54758 450:0.48457 500:0.43513 600:0.36185 700:0.30988 800:0.27102
Water | Steam | Specific heat capacity | 1e5 | 0.6 | 380:2048.7 400:2008.1 450:1975.9 500:1981.2 600:2026.4 700:2086.6 800:2152.7
Water | Steam | Dynamic viscosity | 1e5 | 1 | 380:1.2498e-5 400:1.3278e-5 500:1.7299e-5 600:2.1425e-5 800:2.9657e-5
Water | Steam | Thermal conductivity | 1e5 | 1 | 380:0.02513 400:0.02682 500:0.03603 600:0.04642 800:0.06991
Water | Vaporisation | Saturation pressure | | 0.2 | 280:991.82 300:3536.58941 320:10545.3 340:27187.4 360:62194.1 373.15:101418 400:245753 450:932041 500:2638897.76 600:12344314.6
Water | Vaporisation | Transition temperature | | 0.05 | 1e4:318.9575 1e5:372.755919 1e6:453.035632 5e6:537.0929 1e7:584.149488
Water | Vaporisation | Latent heat | | 0.5 | 273.16:2500.91e3 300:2437.32e3 340:2340.87e3 373.15:2256.47e3 400:2182.76e3 500:1827.13e3 600:1172.78e3
Water | Vaporisation | Density of saturated liquid | | 0.2 | 318.9575:989.844 372.7559:958.637 453.0356:887.127 537.0929:777.360
Water | Vaporisation | Density of saturated vapour | | 0.3 | 318.9575:0.06816 372.7559:0.59031 453.0356:5.14539 537.0929:25.35094
# CRC Handbook, properties of ice
Water | Ice Ih | Density | | 0.3 | 173.15:929.2 193.15:927.4 213.15:925.2 233.15:922.8 253.15:920.3 273.15:916.7
Water | Ice Ih | Specific heat capacity | | 2 | 200:1566 240:1860 270:2091
# Incropera, Table A.4
Air, dry | Gas | Specific heat capacity | 101325 | 1 | 250:1006 300:1007 400:1014 600:1051 800:1099 1000:1141
Air, dry | Gas | Dynamic viscosity | 101325 | 2 | 250:1.596e-5 300:1.846e-5 400:2.301e-5 600:3.058e-5 1000:4.244e-5
Air, dry | Gas | Thermal conductivity | 101325 | 2.5 | 250:0.0223 300:0.0263 400:0.0338 600:0.0469 1000:0.0667
# NASA Glenn transport and thermodynamic coefficients (dilute gas)
Nitrogen | Gas | Dynamic viscosity | 1e4 | 2 | 300:1.7906e-5 1000:4.1624e-5
Nitrogen | Gas | Thermal conductivity | 1e4 | 3 | 300:0.02615 1000:0.06476
Nitrogen | Gas | Specific heat capacity | 1e4 | 0.6 | 300:1039.69 1000:1167.17
Oxygen | Gas | Dynamic viscosity | 1e4 | 2 | 300:2.0743e-5 1000:4.9087e-5
Oxygen | Gas | Specific heat capacity | 1e4 | 0.6 | 300:918.39 1000:1090.12
Argon | Gas | Dynamic viscosity | 1e4 | 1 | 300:2.2730e-5 1000:5.5516e-5
Argon | Gas | Thermal conductivity | 1e4 | 1 | 300:0.01779 1000:0.04348
Argon | Gas | Specific heat capacity | 1e4 | 0.6 | 300:520.33 1000:520.33
Carbon dioxide | Gas | Dynamic viscosity | 1e4 | 2 | 300:1.5015e-5 1000:4.1331e-5
Carbon dioxide | Gas | Specific heat capacity | 1e4 | 0.7 | 300:845.73 1000:1234.02
Helium | Gas | Dynamic viscosity | 1e4 | 1 | 300:1.9927e-5 1000:4.6254e-5
Hydrogen | Gas | Dynamic viscosity | 1e4 | 2 | 300:8.9738e-6 1000:2.0558e-5
Methane | Gas | Dynamic viscosity | 1e4 | 2 | 300:1.1200e-5
Methane | Gas | Specific heat capacity | 1e4 | 0.6 | 300:2229.11
Ethane | Gas | Specific heat capacity | 1e4 | 0.7 | 300:1753.48
Propane | Gas | Specific heat capacity | 1e4 | 0.7 | 300:1677.17
Ammonia | Gas | Specific heat capacity | 1e4 | 0.8 | 300:2094.96
# VDI Heat Atlas, 2nd ed. (2010), saturated fluids
Hydrogen | Vaporisation | Density of saturated liquid | | 0.5 | 23:67.59 29:57.12
Argon | Vaporisation | Density of saturated liquid | | 0.3 | 90:1378.6 120:1162.8
Argon | Vaporisation | Saturation pressure | | 0.5 | 90:133510 120:1213000
Argon | Vaporisation | Latent heat | | 1 | 90:159.1e3 120:126.8e3
Ammonia | Vaporisation | Density of saturated liquid | | 0.3 | 270:642.9 330:550.9
Ammonia | Vaporisation | Saturation pressure | | 0.5 | 270:381000 330:2421000
Ammonia | Vaporisation | Latent heat | | 1 | 270:1273.4e3 330:1014.6e3
R134a | Vaporisation | Density of saturated liquid | | 0.3 | 220:1455.2 285:1254.5
R134a | Vaporisation | Saturation pressure | | 0.5 | 220:24430 285:440830
R134a | Vaporisation | Latent heat | | 1 | 220:233.9e3 285:189.2e3
R134a | Liquid | Surface tension | | 2 | 220:0.01969 285:0.00988
Methane | Vaporisation | Density of saturated liquid | | 0.3 | 130:394.04 160:336.31
Methane | Vaporisation | Saturation pressure | | 0.5 | 130:367300 160:1592100
Methanol | Vaporisation | Density of saturated liquid | | 0.5 | 280:803.22 385:697.22
Ethane | Vaporisation | Density of saturated liquid | | 0.3 | 175:555.6 225:488.9
Ethane | Vaporisation | Latent heat | | 1 | 175:501.6e3 225:426.4e3
Ethanol | Vaporisation | Density of saturated liquid | | 0.6 | 340:747.74 400:680.64
Propane | Vaporisation | Density of saturated liquid | | 0.3 | 225:587.8 275:526.1
Propane | Vaporisation | Saturation pressure | | 0.5 | 225:77020 275:501800
Propane | Vaporisation | Latent heat | | 1 | 225:431.9e3 275:372.3e3
n-Butane | Vaporisation | Density of saturated liquid | | 0.3 | 250:625.0 325:539.9
Isobutane | Vaporisation | Density of saturated liquid | | 0.3 | 250:606.3 300:548.3
n-Pentane | Vaporisation | Density of saturated liquid | | 0.4 | 320:598.6 380:528.4
Benzene | Vaporisation | Density of saturated liquid | | 0.4 | 325:844.3 450:694.3
Toluene | Vaporisation | Density of saturated liquid | | 0.4 | 383.75:779.14 470:680.44
Acetone | Vaporisation | Density of saturated liquid | | 0.4 | 360:711.08 420:624.5
# CRC Handbook spot values and Thermal-FluidsPedia
Methanol | Liquid | Dynamic viscosity | 101325 | 3 | 298.15:0.560e-3 293.15:0.578e-3
Ethanol | Liquid | Dynamic viscosity | 101325 | 2 | 298.15:1.095e-3
Benzene | Liquid | Dynamic viscosity | 101325 | 1 | 298.15:0.601e-3
Benzene | Liquid | Surface tension | | 1 | 298.15:0.02818
Ethylene glycol | Liquid | Dynamic viscosity | | 5 | 298.15:16.2e-3
Mercury | Liquid | Dynamic viscosity | | 2 | 298.15:1.53e-3
# Incropera, Table A.1, against NASA Glenn fits
Silver | Solid | Specific heat capacity | | 1.5 | 300:235 400:239 600:250 800:262 1200:292
Aluminium | Solid | Specific heat capacity | | 1.5 | 400:949 600:1033 800:1146
Copper | Solid | Specific heat capacity | | 1 | 300:385 400:397 600:417 800:433 1000:451 1200:480
Magnesium | Solid | Specific heat capacity | | 1.5 | 400:1074 600:1170 800:1267
Molybdenum | Solid | Specific heat capacity | | 1 | 300:251 600:275 1000:295 1500:330 2500:459
Nickel | Solid | Specific heat capacity | | 1 | 300:444 400:485 600:592 800:530
Silicon | Solid | Specific heat capacity | | 1.5 | 300:712 400:790 600:867 1000:946
Tantalum | Solid | Specific heat capacity | | 2 | 300:140 600:146 1000:152
# NIST-JANAF Shomate equations against NASA Glenn fits and handbook points
Iron | Solid (alpha) | Specific heat capacity | | 1 | 400:490.6 500:531.5 600:574.1 700:619.6 800:677.7 900:770.0 1000:973.2
Zinc | Solid | Specific heat capacity | | 1.5 | 400:403.0 500:419.0 600:437.2
Quartz | Solid (alpha) | Specific heat capacity | | 1.5 | 400:889.3 500:992.6 600:1072.1 700:1144.5
Copper | Liquid | Specific heat capacity | | 0.5 | 1400:516.9
Iron | Liquid | Specific heat capacity | | 0.5 | 1900:824.1
# ITS-90 and other lists of elements
Copper | Melting | Transition temperature | | 0.01 | -:1357.77
Aluminium | Melting | Transition temperature | | 0.01 | -:933.473
Zinc | Melting | Transition temperature | | 0.01 | -:692.677
Tin | Melting | Transition temperature | | 0.01 | -:505.078
Aluminium | Melting | Latent heat | | 1 | -:396.6e3
Copper | Melting | Latent heat | | 1 | -:206.8e3
Iron | Melting | Latent heat | | 0.5 | -:247.2e3
Lead | Melting | Latent heat | | 1 | -:23.2e3
Gold | Solid | Density | | 0.5 | -:19300
Platinum | Solid | Density | | 2 | -:21090
Titanium | Solid (alpha) | Density | | 0.5 | -:4507
Tungsten | Solid | Density | | 0.5 | -:19250
Silicon | Solid | Density | | 0.5 | -:2330
Uranium | Solid (alpha) | Density | | 0.5 | -:19050
# Assael, and Zinkle and Sobolev, against the fits of the database
Aluminium | Liquid | Density | | 0.1 | 934:2377.1 1000:2356.5 1100:2325.4
Iron | Liquid | Density | | 0.1 | 1900:6952.5 2000:6859.9 2400:6489.5
Lead | Liquid | Density | | 0.3 | 700:10533
Lead | Liquid | Thermal conductivity | | 1 | 700:16.873
Lead | Liquid | Specific heat capacity | | 0.5 | 700:146.19
Sodium | Liquid | Specific heat capacity | | 0.5 | 500:1334 600:1301 800:1260 1000:1252
Sodium | Liquid | Density | | 0.2 | 500:897 700:852 900:805
Sodium | Liquid | Dynamic viscosity | | 1 | 500:4.15e-4 800:2.27e-4 1000:1.81e-4
Lithium | Liquid | Specific heat capacity | | 1 | 500:4364.25
# Other tables of liquids
Engine oil, unused | Liquid | Density | | 0.3 | 300:884 340:860 380:836
Solar salt | Liquid | Density | | 0.5 | 673.15:1829.4
Solar salt | Liquid | Specific heat capacity | | 1 | 673.15:1502.2
Biphenyl and diphenyl oxide oil | Liquid | Density | | 0.5 | 295.15:1060 375.15:997 475.15:911 575.15:815
Biphenyl and diphenyl oxide oil | Liquid | Specific heat capacity | | 1 | 375.15:1781 475.15:2054 575.15:2319
Seawater, 35 g/kg | Liquid | Density | | 0.1 | 298.15:1023.56
# Steels: other sources than the design values
Stainless steel 316 | Solid | Thermal conductivity | | 12 | 300:13.4 400:15.2 600:18.3 800:21.3
Stainless steel 316 | Solid | Specific heat capacity | | 8 | 300:468 600:550 800:576
Stainless steel 304 | Solid | Thermal conductivity | | 8 | 300:16.2 773:21.5
"""
