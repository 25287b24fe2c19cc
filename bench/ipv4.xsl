<?xml version="1.0"?>
<!--
  A replace of IPv4 addresses and MTUs, from OpenConfig to the native models: what somebody would write
  who has no plug-in. It knows nothing of deletes, of the addresses that a device has, and of faults in
  a request.
-->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:if="http://openconfig.net/yang/interfaces"
                xmlns:ip="http://openconfig.net/yang/interfaces/ip"
                xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0"
                exclude-result-prefixes="if ip">
  <xsl:output omit-xml-declaration="yes"/>

  <xsl:template match="/">
    <interface-configurations xmlns="urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg">
      <xsl:apply-templates select="if:interfaces/if:interface/if:subinterfaces/if:subinterface"/>
    </interface-configurations>
  </xsl:template>

  <xsl:template match="if:subinterface">
    <interface-configuration xmlns="urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg">
      <active>act</active>
      <interface-name>
        <xsl:value-of select="../../if:name"/>
        <xsl:if test="if:index &gt; 0">
          <xsl:value-of select="concat('.', if:index)"/>
        </xsl:if>
      </interface-name>
      <xsl:apply-templates select="ip:ipv4"/>
    </interface-configuration>
  </xsl:template>

  <xsl:template match="ip:ipv4">
    <ipv4-network xmlns="urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg">
      <addresses>
        <secondaries>
          <xsl:for-each select="ip:addresses/ip:address[position() &gt; 1]">
            <secondary nc:operation="replace">
              <address>
                <xsl:value-of select="ip:ip"/>
              </address>
              <xsl:call-template name="netmask"/>
            </secondary>
          </xsl:for-each>
        </secondaries>
        <xsl:for-each select="ip:addresses/ip:address[1]">
          <primary nc:operation="replace">
            <address nc:operation="replace">
              <xsl:value-of select="ip:ip"/>
            </address>
            <xsl:call-template name="netmask"/>
          </primary>
        </xsl:for-each>
      </addresses>
      <xsl:for-each select="ip:config/ip:mtu">
        <mtu nc:operation="replace">
          <xsl:value-of select="."/>
        </mtu>
      </xsl:for-each>
    </ipv4-network>
  </xsl:template>

  <!-- A table, the usual lengths first: each test costs time. -->
  <xsl:template name="netmask">
    <xsl:variable name="length" select="string(ip:config/ip:prefix-length)"/>
    <netmask xmlns="urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg" nc:operation="replace">
      <xsl:choose>
        <xsl:when test="$length = '24'">255.255.255.0</xsl:when>
        <xsl:when test="$length = '32'">255.255.255.255</xsl:when>
        <xsl:when test="$length = '31'">255.255.255.254</xsl:when>
        <xsl:when test="$length = '30'">255.255.255.252</xsl:when>
        <xsl:when test="$length = '29'">255.255.255.248</xsl:when>
        <xsl:when test="$length = '28'">255.255.255.240</xsl:when>
        <xsl:when test="$length = '27'">255.255.255.224</xsl:when>
        <xsl:when test="$length = '26'">255.255.255.192</xsl:when>
        <xsl:when test="$length = '25'">255.255.255.128</xsl:when>
        <xsl:when test="$length = '23'">255.255.254.0</xsl:when>
        <xsl:when test="$length = '22'">255.255.252.0</xsl:when>
        <xsl:when test="$length = '21'">255.255.248.0</xsl:when>
        <xsl:when test="$length = '20'">255.255.240.0</xsl:when>
        <xsl:when test="$length = '19'">255.255.224.0</xsl:when>
        <xsl:when test="$length = '18'">255.255.192.0</xsl:when>
        <xsl:when test="$length = '17'">255.255.128.0</xsl:when>
        <xsl:when test="$length = '16'">255.255.0.0</xsl:when>
        <xsl:when test="$length = '15'">255.254.0.0</xsl:when>
        <xsl:when test="$length = '14'">255.252.0.0</xsl:when>
        <xsl:when test="$length = '13'">255.248.0.0</xsl:when>
        <xsl:when test="$length = '12'">255.240.0.0</xsl:when>
        <xsl:when test="$length = '11'">255.224.0.0</xsl:when>
        <xsl:when test="$length = '10'">255.192.0.0</xsl:when>
        <xsl:when test="$length = '9'">255.128.0.0</xsl:when>
        <xsl:when test="$length = '8'">255.0.0.0</xsl:when>
        <xsl:when test="$length = '7'">254.0.0.0</xsl:when>
        <xsl:when test="$length = '6'">252.0.0.0</xsl:when>
        <xsl:when test="$length = '5'">248.0.0.0</xsl:when>
        <xsl:when test="$length = '4'">240.0.0.0</xsl:when>
        <xsl:when test="$length = '3'">224.0.0.0</xsl:when>
        <xsl:when test="$length = '2'">192.0.0.0</xsl:when>
        <xsl:when test="$length = '1'">128.0.0.0</xsl:when>
        <xsl:when test="$length = '0'">0.0.0.0</xsl:when>
      </xsl:choose>
    </netmask>
  </xsl:template>
</xsl:stylesheet>
